#include "foundation/LcUMemoryArena.h"

#include <cstring>
#include <initializer_list>

#include "foundation/LcUMemoryScrub.h"
#include "foundation/LcUSysMemory.h"

namespace {
constexpr uint64_t eFIRST_PAGE_WASTE = 48;

unsigned Low32(const void* p) {
  return unsigned(reinterpret_cast<uintptr_t>(p));
}

unsigned char* Bytes(void* p) {
  return static_cast<unsigned char*>(p);
}

int LowestBit(uint64_t mask) {
  return __builtin_ctzll(mask);
}
}  // namespace

void LcUMemoryArena::Setup(uint64_t size, uint64_t align, uint64_t region, uint64_t pageSize, uint64_t standardRegion) {
  uint64_t s = (size > 8 ? size : 8) - 1;
  uint64_t a = align > 8 ? align : 8;
  requestedSize = size;
  alignment = align;
  blockSize = s - s % a + a;
  regionBytes = region ? region : standardRegion;
  if (regionBytes == standardRegion) {
    pageBytes = pageSize;
    // Page 0 loses 48 bytes to headers: grow the commit unit until the waste
    // is at most 1/128 of it.
    while ((eFIRST_PAGE_WASTE + (pageBytes - eFIRST_PAGE_WASTE) % blockSize) * 128 > pageBytes) {
      if (pageBytes * 2 >= regionBytes) {
        pageBytes = regionBytes;
        break;
      }
      pageBytes *= 2;
    }
  } else {
    pageBytes = regionBytes;
  }
  regionMask = ~regionBytes + 1;
  pageMask = ~pageBytes + 1;
  uint64_t pages = regionBytes / pageBytes;
  allPagesMask = pages < 2 ? 0 : ((pages >= 64 ? ~uint64_t(0) : (uint64_t(1) << pages) - 1) & ~uint64_t(1));
  usedBlocks = 0;
  partialRegions = nullptr;
  fullRegions = nullptr;
}

uint64_t LcUMemoryArena::PageSetupBytes(uint32_t index) const {
  if (SinglePage()) return regionBytes - 32;
  return index == 0 ? pageBytes - 32 : pageBytes;
}

// Threading every block at once would touch the whole fresh page; it is
// done only when checking, so that validation walks every free block.
void LcUMemoryArena::SetupPage(Page* page, uint64_t bytes, bool scrub, bool check) {
  unsigned char* first = Bytes(page) + sizeof(Page);
  uint64_t count = (bytes - sizeof(Page)) / blockSize;
  if (scrub) {
    std::memset(first, LcUMemoryScrub::eFREED, count * blockSize);
    std::memset(first + count * blockSize, LcUMemoryScrub::eGUARD, bytes - sizeof(Page) - count * blockSize);
  }
  page->usedCount = 0;
  page->freeList = nullptr;
  page->freshCount = check ? 0 : uint32_t(count);
  if (check)
    for (uint64_t i = 0; i < count; ++i) {
      void* block = first + i * blockSize;
      *static_cast<void**>(block) = page->freeList;
      page->freeList = block;
    }
}

LcUMemoryArena::Region* LcUMemoryArena::NewRegion(bool scrub, bool check) {
  void* space = LcUSysMemory::ReserveAligned(regionBytes, 0);
  if (!space) return nullptr;
  uint64_t first = SinglePage() ? regionBytes : pageBytes;
  if (!LcUSysMemory::Commit(space, first)) {
    LcUSysMemory::Free(space);
    return nullptr;
  }
  Region* region = static_cast<Region*>(space);
  region->next = region->prev = nullptr;
  if (!SinglePage()) {
    region->freePagesMask = 1;
    region->uncommittedPagesMask = allPagesMask;
  }
  SetupPage(PageAt(region, 0), PageSetupBytes(0), scrub, check);
  Push(partialRegions, region);
  return region;
}

void LcUMemoryArena::Unlink(Region*& list, Region* region) {
  if (region->prev) region->prev->next = region->next;
  else list = region->next;
  if (region->next) region->next->prev = region->prev;
  region->next = region->prev = nullptr;
}

void LcUMemoryArena::Push(Region*& list, Region* region) {
  region->prev = nullptr;
  region->next = list;
  if (list) list->prev = region;
  list = region;
}

void* LcUMemoryArena::AllocBlock(bool scrub, bool check) {
  Region* region = partialRegions;
  if (!region) {
    region = NewRegion(scrub, check);
    if (!region) return nullptr;
  } else if (check) {
    ValidateRegion(region);
  }
  Page* page;
  if (SinglePage()) {
    page = PageAt(region, 0);
  } else if (region->freePagesMask) {
    page = PageAt(region, LowestBit(region->freePagesMask));
  } else {
    int index = LowestBit(region->uncommittedPagesMask);
    if (!LcUSysMemory::Commit(reinterpret_cast<char*>(region) + index * pageBytes, pageBytes)) return nullptr;
    page = PageAt(region, index);
    SetupPage(page, pageBytes, scrub, check);
    region->uncommittedPagesMask &= ~(uint64_t(1) << index);
    region->freePagesMask |= uint64_t(1) << index;
  }
  void* block = page->freeList;
  if (block) page->freeList = *static_cast<void**>(block);
  else block = Bytes(page) + sizeof(Page) + --page->freshCount * blockSize;
  ++page->usedCount;
  if (!page->freeList && !page->freshCount) {
    bool full = true;
    if (!SinglePage()) {
      region->freePagesMask &= ~(uint64_t(1) << PageIndex(block));
      full = region->freePagesMask == 0 && region->uncommittedPagesMask == 0;
    }
    if (full) {
      Unlink(partialRegions, region);
      Push(fullRegions, region);
    }
  }
  if (scrub) LcUMemoryScrub::OnAlloc(block, requestedSize, blockSize, check);
  ++usedBlocks;
  return block;
}

bool LcUMemoryArena::Holds(Region* region) const {
  for (Region* r = partialRegions; r; r = r->next)
    if (r == region) return true;
  for (Region* r = fullRegions; r; r = r->next)
    if (r == region) return true;
  return false;
}

void LcUMemoryArena::FreeBlock(void* block, bool scrub, bool check) {
  Region* region = reinterpret_cast<Region*>(reinterpret_cast<uintptr_t>(block) & regionMask);
  if (check) {
    if (!Holds(region)) {
      LcUSysMemory::DebugOutput("Dealloc: Block %x lies in region %x which is not in arena %x", Low32(block),
                                Low32(region), Low32(this));
      return;
    }
    ValidateRegion(region);
  }
  uint32_t index = 0;
  Page* page;
  if (SinglePage()) {
    page = PageAt(region, 0);
  } else {
    index = PageIndex(block);
    page = PageAt(region, index);
  }
  if (!page->freeList && !page->freshCount) {
    bool wasFull = true;
    if (!SinglePage()) {
      wasFull = region->freePagesMask == 0 && region->uncommittedPagesMask == 0;
      region->freePagesMask |= uint64_t(1) << index;
    }
    if (wasFull) {
      Unlink(fullRegions, region);
      Push(partialRegions, region);
    }
  }
  if (scrub) LcUMemoryScrub::OnFree(block, requestedSize, blockSize, check);
  *static_cast<void**>(block) = page->freeList;
  page->freeList = block;
  --page->usedCount;
  --usedBlocks;
  if (page->usedCount != 0) return;
  if (SinglePage()) {
    ReleaseRegion(region);
    return;
  }
  if (index != 0) {
    LcUSysMemory::Decommit(reinterpret_cast<char*>(region) + index * pageBytes, pageBytes);
    region->freePagesMask &= ~(uint64_t(1) << index);
    region->uncommittedPagesMask |= uint64_t(1) << index;
  }
  if (region->uncommittedPagesMask == allPagesMask && PageAt(region, 0)->usedCount == 0) ReleaseRegion(region);
}

void LcUMemoryArena::ReleaseRegion(Region* region) {
  Unlink(partialRegions, region);
  LcUSysMemory::Free(region);
}

bool LcUMemoryArena::ValidatePage(Page* page, uint64_t bytes) {
  uint64_t capacity = (bytes - sizeof(Page)) / blockSize;
  if (page->usedCount > capacity) {
    LcUSysMemory::DebugOutput("Memory Page %x , size %d, block size %d has invalid used blocks %d\n", Low32(page),
                              int(bytes), int(blockSize), int(page->usedCount));
    return false;
  }
  uintptr_t first = reinterpret_cast<uintptr_t>(page) + sizeof(Page);
  uintptr_t end = reinterpret_cast<uintptr_t>(page) + bytes;
  for (void* block = page->freeList; block; block = *static_cast<void**>(block)) {
    uintptr_t at = reinterpret_cast<uintptr_t>(block);
    if (at < first || at + blockSize > end) {
      LcUSysMemory::DebugOutput("Free Block %x , size %d, is out of range for page %x, size %d\n", Low32(block),
                                int(blockSize), Low32(page), int(bytes));
      return false;
    }
    if ((at - first) % blockSize != 0) {
      LcUSysMemory::DebugOutput("Free Block %x , size %d, on page %x points into middle of block\n", Low32(block),
                                int(blockSize), Low32(page));
      return false;
    }
  }
  return true;
}

bool LcUMemoryArena::ValidateRegion(Region* region) {
  uint64_t lowMask = ~regionMask;
  bool good = true;
  if (reinterpret_cast<uintptr_t>(region->next) & lowMask) {
    LcUSysMemory::DebugOutput("Memory Region %x has invalid next pointer %x\n", Low32(region), Low32(region->next));
    good = false;
  }
  if (reinterpret_cast<uintptr_t>(region->prev) & lowMask) {
    LcUSysMemory::DebugOutput("Memory Region %x has invalid prev pointer %x\n", Low32(region), Low32(region->prev));
    good = false;
  }
  if (SinglePage()) return ValidatePage(PageAt(region, 0), PageSetupBytes(0)) && good;
  if (region->uncommittedPagesMask & ~allPagesMask) {
    LcUSysMemory::DebugOutput("Memory Region %x has invalid uncommited pages mask %x (at most %x bits can be set)\n",
                              Low32(region), unsigned(region->uncommittedPagesMask), unsigned(allPagesMask));
    return false;
  }
  if (region->freePagesMask & ~(allPagesMask | 1)) {
    LcUSysMemory::DebugOutput("Memory Region %x has invalid free pages mask %x (at most %x bits can be set)\n",
                              Low32(region), unsigned(region->freePagesMask), unsigned(allPagesMask | 1));
    return false;
  }
  uint32_t pages = uint32_t(regionBytes / pageBytes);
  for (uint32_t i = 0; i < pages; ++i)
    if (i == 0 || !(region->uncommittedPagesMask & (uint64_t(1) << i)))
      if (!ValidatePage(PageAt(region, i), PageSetupBytes(i))) return false;
  return good;
}

bool LcUMemoryArena::Validate() {
  bool good = true;
  for (Region* list : {partialRegions, fullRegions})
    for (Region* r = list; r; r = r->next)
      if (!ValidateRegion(r)) {
        good = false;
        break;
      }
  return good;
}

uint64_t LcUMemoryArena::CommittedBytes() const {
  uint64_t pagesPerRegion = regionBytes / pageBytes;
  uint64_t pages = 0;
  for (Region* r = fullRegions; r; r = r->next) pages += pagesPerRegion;
  for (Region* r = partialRegions; r; r = r->next)
    pages += 1 + (SinglePage() ? 0 : uint64_t(__builtin_popcountll(r->uncommittedPagesMask ^ allPagesMask)));
  return pages * pageBytes;
}

uint64_t LcUMemoryArena::ReservedBytes() const {
  uint64_t regions = 0;
  for (Region* list : {partialRegions, fullRegions})
    for (Region* r = list; r; r = r->next) ++regions;
  return regions * regionBytes;
}

void LcUMemoryArena::ReleaseAll() {
  for (Region** list : {&partialRegions, &fullRegions})
    while (Region* r = *list) {
      *list = r->next;
      LcUSysMemory::Free(r);
    }
  usedBlocks = 0;
}
