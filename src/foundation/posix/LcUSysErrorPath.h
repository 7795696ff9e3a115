#pragma once
#include <cstdint>

// Wide paths as the Linux calls take them: UTF-8, either separator as '/'.
// Needs no allocation, so the crash path can prepare its file name early.
class LcUSysErrorPath {
public:
  static bool ToSystem(const char16_t* path, char* target, int32_t capacity);
};
