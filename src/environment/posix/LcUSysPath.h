#pragma once
#include "foundation/LcUString.h"

// Paths at the Linux system call: UTF-8, with either separator as '/'.
class LcUSysPath {
public:
  static bool ToNative(const char16_t* path, LcUStringA& native);
};
