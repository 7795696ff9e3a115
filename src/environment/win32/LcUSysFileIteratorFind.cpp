#include <windows.h>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"

bool LcUSysFileIterator::Step(LcUString& name, uint32_t& attributes) {
  WIN32_FIND_DATAW data;
  if (!find) {
    LcUString pattern;
    LcUSysFile::Join(folder.Get(), u"*", pattern);
    HANDLE first = FindFirstFileW(reinterpret_cast<const wchar_t*>(pattern.Get()), &data);
    if (first == INVALID_HANDLE_VALUE) return false;
    find = first;
  } else if (!FindNextFileW(find, &data)) {
    return false;
  }
  name.Assign(reinterpret_cast<const char16_t*>(data.cFileName));
  attributes = data.dwFileAttributes;
  return true;
}

void LcUSysFileIterator::CloseFind() {
  if (find) FindClose(find);
  find = nullptr;
}
