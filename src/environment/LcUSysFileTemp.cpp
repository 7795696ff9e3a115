#include <chrono>
#include <cstdlib>

#include "environment/LcUSysFile.h"

namespace {
const int32_t kPrefixLimit = 30;
const int kTries = 100;

// Stays empty unless a program sets it.
LcUString tempFolderOverride;

// Windows' rand gives 15 bits; the names keep that form on Linux too.
int Random15() {
  return std::rand() & 0x7FFF;
}
}  // namespace

void LcUSysFile::SetTempFolderOverride(const char16_t* folder) {
  tempFolderOverride.Assign(folder ? folder : u"");
}

bool LcUSysFile::GetTempFolder(LcUString& out) {
  if (!tempFolderOverride.IsEmpty() && IsDirectory(tempFolderOverride.Get())) {
    out.Assign(tempFolderOverride.Get());
    return true;
  }
  return GetSystemTempFolder(out) && IsDirectory(out.Get());
}

bool LcUSysFile::MakeTempName(const char16_t* folder, const char16_t* prefix, const char16_t* extension,
                              LcUString& out) {
  LcUString base(prefix ? prefix : u"file");
  if (base.Length() > kPrefixLimit) base.SetLength(kPrefixLimit);
  LcUString where;
  if (folder && *folder)
    where.Assign(folder);
  else if (!GetTempFolder(where))
    where.Clear();
  if (where.IsEmpty() || !IsDirectory(where.Get())) {
    out.Clear();
    return false;
  }
  auto ticks = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
  std::srand(unsigned(ticks.count()));
  const int processId = int(GetProcessId());
  LcUString name;
  for (int i = 0; i < kTries; ++i) {
    int first = Random15(), second = Random15();
    if (extension && *extension)
      name.Format(u"%ls_%d_%4x%4x.%ls", base.Get(), processId, first, second, extension);
    else
      name.Format(u"%ls_%d_%4x%4x", base.Get(), processId, first, second);
    Join(where.Get(), name.Get(), out);
    if (!Exists(out.Get())) return true;
  }
  out.Clear();
  return false;
}

bool LcUSysFile::MakeTempFile(const char16_t* folder, const char16_t* prefix, const char16_t* extension, int64_t size,
                              LcUString& out) {
  for (int i = 0; i < kTries; ++i)
    if (MakeTempName(folder, prefix, extension, out) && Truncate(out.Get(), size)) return true;
  out.Clear();
  return false;
}

bool LcUSysFile::MakeTempFolder(LcUString& out) {
  for (int i = 0; i < kTries; ++i)
    if (MakeTempName(nullptr, nullptr, nullptr, out) && CreateDirectories(out.Get())) return true;
  out.Clear();
  return false;
}
