#include "foundation/LcUPageFile.h"

#include <cstring>

#include "foundation/LcUMemory.h"
#include "foundation/LcUPage.h"

LcUPageFile::~LcUPageFile() {
  if (pages) LcUMemory::Free(pages, uint64_t(count) * sizeof(void*), alignof(void*));
}

void* LcUPageFile::GetPage(uint32_t pageNumber, void* argument, int32_t& status, int32_t pass,
                           LcUPageOutProgress* progress) {
  status = 0;
  if (void* page = PeekPage(pageNumber)) return page;
  if (pass != 5) LcUPage::PageOut(0, pass, progress);
  return LoadPage(pageNumber, argument, status);
}

void* LcUPageFile::PeekPage(uint32_t pageNumber) const {
  return pageNumber >= 1 && pageNumber <= count ? pages[pageNumber - 1] : nullptr;
}

bool LcUPageFile::SetPage(uint32_t pageNumber, void* page) {
  if (pageNumber == 0) return false;
  if (pageNumber > count) {
    if (!page) return true;
    void** grown = static_cast<void**>(
        LcUMemory::Realloc(pages, uint64_t(count) * sizeof(void*), uint64_t(pageNumber) * sizeof(void*), alignof(void*)));
    if (!grown) return false;
    std::memset(grown + count, 0, size_t(pageNumber - count) * sizeof(void*));
    pages = grown;
    count = pageNumber;
  }
  void*& slot = pages[pageNumber - 1];
  if (slot && !page) DropPage(pageNumber, 0xFFFFFFFFu);
  slot = page;
  return true;
}
