#include <windows.h>
#include <errno.h>
#include <io.h>
#include <sys/stat.h>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysNativeFile.h"

namespace {
const wchar_t* Wide(const LcUString& path) {
  return reinterpret_cast<const wchar_t*>(path.Get());
}

// The C runtime's stat refuses a trailing separator that isn't a root's.
int Stat(const char16_t* path, struct _stat64& info) {
  LcUString canonical;
  LcUSysFile::Canonicalise(path, canonical);
  return _wstat64(Wide(canonical), &info);
}

bool Access(const char16_t* path, int mode) {
  LcUString canonical;
  LcUSysFile::Canonicalise(path, canonical);
  return path && _waccess(Wide(canonical), mode) == 0;
}

bool LastWrite(const char16_t* path, FILETIME& time) {
  LcUSysNativeFile file;
  const int kRead = 0, kOpenExisting = 3;
  return file.Open(path, kRead, kOpenExisting, LcUSysNativeFile::eSHARE_READ | LcUSysNativeFile::eSHARE_WRITE, 0,
                   0) &&
         GetFileTime(file.Get(), nullptr, nullptr, &time);
}
}  // namespace

bool LcUSysFile::Exists(const char16_t* path) {
  if (!path || !*path) return false;
  struct _stat64 info;
  return Stat(path, info) == 0 || errno != ENOENT;
}

bool LcUSysFile::IsDirectory(const char16_t* path) {
  struct _stat64 info;
  return path && Stat(path, info) == 0 && (info.st_mode & _S_IFDIR);
}

bool LcUSysFile::IsReadable(const char16_t* path) {
  return Access(path, 4);
}

bool LcUSysFile::IsWritable(const char16_t* path) {
  return Access(path, 2);
}

bool LcUSysFile::GetSize(const char16_t* path, int64_t& size) {
  struct _stat64 info;
  if (!path || Stat(path, info) != 0) return false;
  size = info.st_size;
  return true;
}

bool LcUSysFile::GetTimes(const char16_t* path, int64_t& modified, int64_t& accessed) {
  struct _stat64 info;
  if (!path || Stat(path, info) != 0) return false;
  modified = info.st_mtime;
  accessed = info.st_atime;
  return true;
}

bool LcUSysFile::IsNewerThan(const char16_t* a, const char16_t* b) {
  if (!a || !b || !Exists(b)) return false;
  if (!Exists(a)) return true;
  FILETIME timeA, timeB;
  return LastWrite(a, timeA) && LastWrite(b, timeB) && CompareFileTime(&timeA, &timeB) > 0;
}
