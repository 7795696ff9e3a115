#include "environment/posix/LcUSysPath.h"

bool LcUSysPath::ToNative(const char16_t* path, LcUStringA& native) {
  if (!path || !LcUString::UTF16ToUTF8(path, native, true)) return false;
  char* p = native.GetBuffer();
  for (int32_t i = 0; i < native.Length(); ++i)
    if (p[i] == '\\') p[i] = '/';
  return true;
}
