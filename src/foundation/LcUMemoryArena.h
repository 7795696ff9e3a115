#pragma once
#include <cstdint>

// One block size of the sized allocator: regions aligned to their own size,
// so a block finds its region and page by masking. Callers hold the
// allocator's lock.
struct LcUMemoryArena {
  struct Region {
    Region* next;
    Region* prev;
    uint64_t freePagesMask;         // multi-page regions only
    uint64_t uncommittedPagesMask;  // multi-page regions only
  };
  struct Page {
    void* freeList;
    uint32_t usedCount;
    // Blocks at the start of the page not yet threaded on the free list;
    // the highest of them is handed out next, as if it headed the list.
    uint32_t freshCount;
  };

  uint64_t requestedSize;
  uint64_t alignment;
  uint64_t blockSize;
  uint64_t regionBytes;
  uint64_t pageBytes;
  uint64_t regionMask;
  uint64_t pageMask;
  uint64_t allPagesMask;
  uint64_t usedBlocks;
  Region* partialRegions;
  Region* fullRegions;

  // Region bytes 0 is the standard region size.
  void Setup(uint64_t size, uint64_t align, uint64_t regionSize, uint64_t pageSize, uint64_t standardRegion);
  void* AllocBlock(bool scrub, bool check);
  void FreeBlock(void* block, bool scrub, bool check);
  // False at the first bad region of a list.
  bool Validate();
  uint64_t CommittedBytes() const;
  uint64_t ReservedBytes() const;
  // Gives back every region, used or not.
  void ReleaseAll();

private:
  bool SinglePage() const { return pageBytes == regionBytes; }
  Page* PageAt(Region* region, uint32_t index) const {
    char* base = reinterpret_cast<char*>(region);
    if (SinglePage()) return reinterpret_cast<Page*>(base + 16);
    if (index == 0) return reinterpret_cast<Page*>(base + 32);
    return reinterpret_cast<Page*>(base + index * pageBytes);
  }
  // Page bytes are a power of two.
  uint32_t PageIndex(const void* block) const {
    return uint32_t((reinterpret_cast<uintptr_t>(block) & ~regionMask) >> __builtin_ctzll(pageBytes));
  }
  uint64_t PageSetupBytes(uint32_t index) const;
  void SetupPage(Page* page, uint64_t bytes, bool scrub, bool check);
  Region* NewRegion(bool scrub, bool check);
  void ReleaseRegion(Region* region);
  bool ValidateRegion(Region* region);
  bool ValidatePage(Page* page, uint64_t bytes);
  bool Holds(Region* region) const;
  static void Unlink(Region*& list, Region* region);
  static void Push(Region*& list, Region* region);
};
