#include "environment/LcUResource.h"
#include "environment/LcUResourceLanguages.h"
#include "environment/LcUResourceLibrary.h"
#include "environment/LcUResourceSearch.h"
#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"

namespace {
// Every kind but eDIR_USER_APP_SHARED.
constexpr uint32_t kLanguageOfFileMask = 0x1BF;
}  // namespace

bool LcUResource::FindDataFile(const char16_t* subdir, const char16_t* name, LcUString& out, uint32_t mask) {
  const LcUString sub(subdir), file(name);  // out may alias either
  LcUResourceSearch::EnsureUserFolders(sub.Get(), mask);
  for (int index = 0; index < eDIR_COUNT; ++index) {
    if (!LcUResourceSearch::IsSelected(index, mask)) continue;
    LcUString path;
    LcUSysFile::Join3(GetSearchDir(index).Get(), sub.Get(), file.Get(), path);
    if (!LcUSysFile::Exists(path.Get())) continue;
    LcUError::LogF("LcUResource::FindDataFile found %ls\n", path.Get());
    LcUResourceSearch::CopyInherited(index, sub.Get(), file.Get(), &path);
    out.Swap(path);
    return true;
  }
  return false;
}

bool LcUResource::FindLocalisedDataFile(const char16_t* subdir, const char16_t* name, LcUString& out,
                                        uint32_t mask) {
  const LcUString sub(subdir), file(name);
  const char16_t* languages[LcUResourceLanguages::eCOUNT];
  int32_t count = LcUResourceLanguages::Get(languages);
  for (int32_t i = 0; i < count; ++i) {
    LcUString relative;
    LcUSysFile::Join(languages[i], sub.Get(), relative);
    if (FindDataFile(relative.Get(), file.Get(), out, mask)) return true;
  }
  return false;
}

bool LcUResource::FindLocalisedFile(const char16_t* folder, const char16_t* name, LcUString& out) {
  const LcUString base(folder), file(name);
  out.Clear();
  const char16_t* languages[LcUResourceLanguages::eCOUNT];
  int32_t count = LcUResourceLanguages::Get(languages);
  for (int32_t i = 0; i < count; ++i) {
    LcUString path;
    LcUSysFile::Join3(base.Get(), languages[i], file.Get(), path);
    if (!LcUSysFile::Exists(path.Get())) continue;
    LcUError::LogF("LcUResource::FindLocalisedFile found %ls\n", path.Get());
    out.Swap(path);
    return true;
  }
  return false;
}

bool LcUResource::FindLanguageOfFile(const char16_t* name, LcUString& out) {
  LcUString path, folder;
  if (!FindLocalisedDataFile(nullptr, name, path, kLanguageOfFileMask)) return false;
  LcUSysFile::GetDirectory(path.Get(), &folder, nullptr);
  LcUSysFile::GetDirectory(folder.Get(), nullptr, &out);
  return true;
}

void* LcUResource::LoadLocalisedLibrary(const char16_t* name, const char16_t* folder) {
  LcUString file, path;
  LcUSysFile::SetExtension(name, LcUResourceLibrary::kExtension, file);
  if (!FindLocalisedFile(folder, file.Get(), path)) return nullptr;
  return LcUResourceLibrary::LoadAsData(path.Get());
}
