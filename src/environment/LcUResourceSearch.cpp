#include "environment/LcUResourceSearch.h"

#include <initializer_list>

#include "environment/LcUResource.h"
#include "environment/LcUSysFile.h"

bool LcUResourceSearch::IsSelected(int index, uint32_t mask) {
  return (mask & (1u << index)) != 0 && !LcUResource::GetSearchDir(index).IsEmpty();
}

void LcUResourceSearch::EnsureUserFolders(const char16_t* subdir, uint32_t mask) {
  if (!subdir || !*subdir || (mask & eUSER_FOLDERS_MASK) == 0) return;
  for (int index : {int(LcUResource::eDIR_USER), int(LcUResource::eDIR_LOCAL)}) {
    if (!IsSelected(index, mask)) continue;
    LcUString folder;
    LcUSysFile::Join(LcUResource::GetSearchDir(index).Get(), subdir, folder);
    LcUSysFile::EnsureDirectory(folder.Get());
  }
}

bool LcUResourceSearch::CopyInherited(int index, const char16_t* subdir, const char16_t* name, LcUString* out) {
  if (index != LcUResource::eDIR_USER_INHERIT && index != LcUResource::eDIR_LOCAL_INHERIT) return false;
  const LcUString& target = LcUResource::GetSearchDir(
      index == LcUResource::eDIR_USER_INHERIT ? LcUResource::eDIR_USER : LcUResource::eDIR_LOCAL);
  LcUString source, folder, copy;
  LcUSysFile::Join3(LcUResource::GetSearchDir(index).Get(), subdir, name, source);
  if (subdir && *subdir) {
    LcUSysFile::Join(target.Get(), subdir, folder);
    LcUSysFile::EnsureDirectory(folder.Get());
  }
  LcUSysFile::Join3(target.Get(), subdir, name, copy);
  // The target path itself is made a folder too, so that the copy only
  // lands where the file was already made by other means.
  LcUSysFile::EnsureDirectory(copy.Get());
  if (!LcUSysFile::Copy(source.Get(), copy.Get(), true)) return false;
  if (out) out->Swap(copy);
  return true;
}
