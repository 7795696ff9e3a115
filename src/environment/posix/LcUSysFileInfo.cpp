#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "environment/LcUSysFile.h"
#include "environment/posix/LcUSysPath.h"

namespace {
bool Stat(const char16_t* path, struct stat& info) {
  LcUStringA native;
  return LcUSysPath::ToNative(path, native) && stat(native.Get(), &info) == 0;
}

bool Access(const char16_t* path, int mode) {
  LcUStringA native;
  return LcUSysPath::ToNative(path, native) && access(native.Get(), mode) == 0;
}
}  // namespace

bool LcUSysFile::Exists(const char16_t* path) {
  LcUStringA native;
  if (!path || !*path || !LcUSysPath::ToNative(path, native)) return false;
  struct stat info;
  return stat(native.Get(), &info) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool LcUSysFile::IsDirectory(const char16_t* path) {
  struct stat info;
  return Stat(path, info) && S_ISDIR(info.st_mode);
}

bool LcUSysFile::IsReadable(const char16_t* path) {
  return Access(path, R_OK);
}

bool LcUSysFile::IsWritable(const char16_t* path) {
  return Access(path, W_OK);
}

bool LcUSysFile::GetSize(const char16_t* path, int64_t& size) {
  struct stat info;
  if (!Stat(path, info)) return false;
  size = int64_t(info.st_size);
  return true;
}

bool LcUSysFile::GetTimes(const char16_t* path, int64_t& modified, int64_t& accessed) {
  struct stat info;
  if (!Stat(path, info)) return false;
  modified = int64_t(info.st_mtime);
  accessed = int64_t(info.st_atime);
  return true;
}

bool LcUSysFile::IsNewerThan(const char16_t* a, const char16_t* b) {
  if (!a || !b || !Exists(b)) return false;
  if (!Exists(a)) return true;
  struct stat infoA, infoB;
  if (!Stat(a, infoA) || !Stat(b, infoB) || !S_ISREG(infoA.st_mode) || !S_ISREG(infoB.st_mode)) return false;
  if (!IsReadable(a) || !IsReadable(b)) return false;
  return infoA.st_mtim.tv_sec != infoB.st_mtim.tv_sec ? infoA.st_mtim.tv_sec > infoB.st_mtim.tv_sec
                                                      : infoA.st_mtim.tv_nsec > infoB.st_mtim.tv_nsec;
}
