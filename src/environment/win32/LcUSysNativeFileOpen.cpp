#include <windows.h>

#include "environment/LcUSysNativeFile.h"

bool LcUSysNativeFile::Open(const char16_t* path, int access, int creation, int sharing, int hints, int64_t size) {
  Close();
  if (!path || access < 0 || access > 3 || creation < 0 || creation > 4) return false;
  static const DWORD kAccess[] = {GENERIC_READ, GENERIC_WRITE, FILE_APPEND_DATA, GENERIC_READ | GENERIC_WRITE};
  static const DWORD kCreation[] = {CREATE_NEW, CREATE_ALWAYS, OPEN_ALWAYS, OPEN_EXISTING, TRUNCATE_EXISTING};
  DWORD share = ((sharing & eSHARE_READ) ? FILE_SHARE_READ : 0) | ((sharing & eSHARE_WRITE) ? FILE_SHARE_WRITE : 0);
  DWORD flags = (hints & eHINT_TEMPORARY) ? FILE_ATTRIBUTE_TEMPORARY : FILE_ATTRIBUTE_NORMAL;
  if (hints & eHINT_DELETE_ON_CLOSE) flags |= FILE_FLAG_DELETE_ON_CLOSE;
  if (hints & eHINT_SEQUENTIAL) flags |= FILE_FLAG_SEQUENTIAL_SCAN;
  if (hints & eHINT_RANDOM) flags |= FILE_FLAG_RANDOM_ACCESS;
  if (hints & eHINT_NO_BUFFERING) flags |= FILE_FLAG_NO_BUFFERING;
  HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path), kAccess[access], share, nullptr,
                            kCreation[creation], flags, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  handle = file;
  if (GetFileType(file) != FILE_TYPE_DISK) {
    Close();
    return false;
  }
  if (size != 0) {
    LARGE_INTEGER at;
    at.QuadPart = size;
    if (!SetFilePointerEx(file, at, nullptr, FILE_BEGIN) || !SetEndOfFile(file)) {
      Close();
      return false;
    }
  }
  return true;
}

bool LcUSysNativeFile::Close() {
  if (!IsOpen()) return true;
  HANDLE closing = handle;
  handle = kClosed;
  return CloseHandle(closing) != FALSE;
}

bool LcUSysNativeFile::Sync() {
  return IsOpen() && FlushFileBuffers(handle) != FALSE;
}
