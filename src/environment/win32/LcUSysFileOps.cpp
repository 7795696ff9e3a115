#include <windows.h>
#include <shlobj.h>

#include "environment/LcUSysFile.h"

namespace {
const wchar_t* Wide(const char16_t* path) {
  return reinterpret_cast<const wchar_t*>(path);
}
}  // namespace

bool LcUSysFile::Copy(const char16_t* from, const char16_t* to, bool failIfExists) {
  return from && to && CopyFileW(Wide(from), Wide(to), failIfExists) != FALSE;
}

bool LcUSysFile::Rename(const char16_t* from, const char16_t* to) {
  return from && to && MoveFileW(Wide(from), Wide(to)) != FALSE;
}

bool LcUSysFile::Delete(const char16_t* path, bool force) {
  if (!path) return false;
  if (force) {
    DWORD attributes = GetFileAttributesW(Wide(path));
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
      SetFileAttributesW(Wide(path), attributes & ~DWORD(FILE_ATTRIBUTE_READONLY));
  }
  return DeleteFileW(Wide(path)) != FALSE;
}

bool LcUSysFile::RemoveFolder(const char16_t* path) {
  return path && RemoveDirectoryW(Wide(path)) != FALSE;
}

// The shell call wants a full path with backslashes.
bool LcUSysFile::CreateDirectories(const char16_t* path) {
  if (!path || !*path) return false;
  wchar_t full[MAX_PATH];
  DWORD n = GetFullPathNameW(Wide(path), MAX_PATH, full, nullptr);
  if (n == 0 || n >= MAX_PATH) return false;
  for (DWORD i = 0; i < n; ++i)
    if (full[i] == L'/') full[i] = L'\\';
  int result = SHCreateDirectoryExW(nullptr, full, nullptr);
  return result == ERROR_SUCCESS || result == ERROR_ALREADY_EXISTS || result == ERROR_FILE_EXISTS;
}
