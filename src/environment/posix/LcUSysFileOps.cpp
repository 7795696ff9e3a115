#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "environment/LcUSysFile.h"
#include "environment/posix/LcUSysPath.h"

bool LcUSysFile::Copy(const char16_t* from, const char16_t* to, bool failIfExists) {
  LcUStringA source, target;
  if (!LcUSysPath::ToNative(from, source) || !LcUSysPath::ToNative(to, target)) return false;
  std::error_code error;
  auto options = failIfExists ? std::filesystem::copy_options::none : std::filesystem::copy_options::overwrite_existing;
  return std::filesystem::copy_file(source.Get(), target.Get(), options, error) && !error;
}

// As on Windows, an existing target is not replaced.
bool LcUSysFile::Rename(const char16_t* from, const char16_t* to) {
  LcUStringA source, target;
  return LcUSysPath::ToNative(from, source) && LcUSysPath::ToNative(to, target) &&
         renameat2(AT_FDCWD, source.Get(), AT_FDCWD, target.Get(), RENAME_NOREPLACE) == 0;
}

// A file without its owner's write bit stands for a read-only file.
bool LcUSysFile::Delete(const char16_t* path, bool force) {
  LcUStringA native;
  struct stat info;
  if (!LcUSysPath::ToNative(path, native) || lstat(native.Get(), &info) != 0 || S_ISDIR(info.st_mode)) return false;
  if (!force && !(info.st_mode & S_IWUSR)) return false;
  return unlink(native.Get()) == 0;
}

bool LcUSysFile::RemoveFolder(const char16_t* path) {
  LcUStringA native;
  return LcUSysPath::ToNative(path, native) && rmdir(native.Get()) == 0;
}

bool LcUSysFile::CreateDirectories(const char16_t* path) {
  LcUStringA native;
  if (!path || !*path || !LcUSysPath::ToNative(path, native)) return false;
  char* p = native.GetBuffer();
  for (int32_t i = 1; i <= native.Length(); ++i) {
    if (p[i] != '/' && p[i] != 0) continue;
    char kept = p[i];
    p[i] = 0;
    bool made = mkdir(p, 0777) == 0 || errno == EEXIST;
    p[i] = kept;
    if (!made) return false;
  }
  struct stat info;
  return stat(native.Get(), &info) == 0 && S_ISDIR(info.st_mode);
}
