#include "environment/LcUSysFile.h"

// Narrow paths are UTF-8; a path that doesn't convert names no file.
namespace {
bool Widen(const char* path, LcUString& wide) {
  return path && LcUString::UTF8ToUTF16(path, -1, wide);
}
}  // namespace

bool LcUSysFile::Exists(const char* path) {
  LcUString wide;
  return Widen(path, wide) && Exists(wide.Get());
}

bool LcUSysFile::IsDirectory(const char* path) {
  LcUString wide;
  return Widen(path, wide) && IsDirectory(wide.Get());
}

bool LcUSysFile::Delete(const char* path, bool force) {
  LcUString wide;
  return Widen(path, wide) && Delete(wide.Get(), force);
}

bool LcUSysFile::EnsureDirectory(const char* path) {
  LcUString wide;
  return Widen(path, wide) && EnsureDirectory(wide.Get());
}

bool LcUSysFile::GetFileChecksum(const char* path, uint32_t& out) {
  LcUString wide;
  return Widen(path, wide) && GetFileChecksum(wide.Get(), out);
}

int LcUSysFile::GetPEImageType(const char* path) {
  LcUString wide;
  return Widen(path, wide) ? GetPEImageType(wide.Get()) : int(ePE_FAILED);
}
