#include "foundation/LcUFileLock.h"

LcUFileLock::LcUFileLock(const char16_t* directory, const char16_t* fileName) {
  SetPath(directory, fileName);
}

LcUFileLock::LcUFileLock(const char* directory, const char* fileName) {
  LcUString wideDirectory, wideName;
  LcUString::MultiByteToWide(directory, wideDirectory);
  LcUString::MultiByteToWide(fileName, wideName);
  SetPath(wideDirectory.Get(), wideName.Get());
}

LcUFileLock::~LcUFileLock() {
  Unlock();
}

void LcUFileLock::SetPath(const char16_t* directory, const char16_t* fileName) {
  path = directory ? directory : u"";
  int32_t n = path.Length();
  if (n > 0 && path[n - 1] != u'/' && path[n - 1] != u'\\') path.Append(u'/');
  path.Append(fileName ? fileName : u"");
}

bool LcUFileLock::TryLock() {
  if (Exists()) return false;
  if (!CreateExclusive()) {
    held = false;
    return false;
  }
  held = Exists();
  return held;
}

bool LcUFileLock::Unlock() {
  if (!held) return false;
  CloseAndDelete();
  handle = -1;
  held = false;
  return true;
}
