#include "foundation/LcUFileLock.h"

#include <windows.h>

namespace {
const wchar_t* Wide(const LcUString& text) {
  return reinterpret_cast<const wchar_t*>(text.Get());
}
}  // namespace

bool LcUFileLock::Exists() const {
  return GetFileAttributesW(Wide(path)) != INVALID_FILE_ATTRIBUTES;
}

// No sharing: while the handle is open nobody else may open the file.
bool LcUFileLock::CreateExclusive() {
  HANDLE file = CreateFileW(Wide(path), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  handle = reinterpret_cast<intptr_t>(file);
  return true;
}

void LcUFileLock::CloseAndDelete() {
  CloseHandle(reinterpret_cast<HANDLE>(handle));
  DeleteFileW(Wide(path));
}
