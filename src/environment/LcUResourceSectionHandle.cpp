#include "environment/LcUResourceSectionHandle.h"

#include "environment/LcUResource.h"
#include "environment/LcUResourceSearch.h"
#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"

LcUResourceSectionHandle::LcUResourceSectionHandle(const char16_t* section, uint32_t mask)
    : section(section ? section : u""), mask(mask) {
  LcUResourceSearch::EnsureUserFolders(this->section.Get(), mask);
  Next();
}

LcUResourceSectionHandle::~LcUResourceSectionHandle() {
  if (entry) entry->Release();
}

bool LcUResourceSectionHandle::Next() {
  if (entry) entry->Release();
  entry = nullptr;
  for (;;) {
    while (directory) {
      if (!justOpened) directory->Next();
      justOpened = false;
      if (!directory->IsValid()) {
        directory.reset();
        break;
      }
      entry = directory->GetEntry();
      const LcUString& name = entry->GetName();
      if (!seen.Insert(name.Get())) {
        entry->Release();
        entry = nullptr;
        continue;
      }
      LcUResourceSearch::CopyInherited(dirIndex, section.Get(), name.Get(), nullptr);
      return true;
    }
    if (++dirIndex >= LcUResource::eDIR_COUNT) {
      dirIndex = LcUResource::eDIR_COUNT;
      return false;
    }
    if (!LcUResourceSearch::IsSelected(dirIndex, mask)) continue;
    LcUString folder;
    LcUSysFile::Join(LcUResource::GetSearchDir(dirIndex).Get(), section.Get(), folder);
    directory.emplace(folder.Get());
    justOpened = true;
  }
}

void LcUResourceSectionHandle::GetPath(LcUString& out) const {
  if (!entry) {
    out.Clear();
    return;
  }
  LcUSysFile::Join(entry->GetFolder().Get(), entry->GetName().Get(), out);
  LcUError::LogF("LcUResourceSectionHandle: found %ls\n", out.Get());
}
