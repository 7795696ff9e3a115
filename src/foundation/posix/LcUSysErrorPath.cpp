#include "foundation/posix/LcUSysErrorPath.h"

#include "foundation/LcUUtf8.h"

bool LcUSysErrorPath::ToSystem(const char16_t* path, char* target, int32_t capacity) {
  int64_t length = 0;
  while (path && path[length]) ++length;
  if (length == 0 || 3 * length >= capacity) return false;
  bool unpaired = false;
  int64_t n = LcUUtf8::EncodeFromUTF16(path, length, target, true, unpaired);
  if (unpaired) return false;
  for (int64_t i = 0; i < n; ++i)
    if (target[i] == '\\') target[i] = '/';
  target[n] = 0;
  return true;
}
