#pragma once
#include <cstdint>

// The language tags that every localised walk takes, in order, each once.
class LcUResourceLanguages {
public:
  enum { eCOUNT = 4 };
  // Fills tags with the distinct tags in order and returns how many.
  static int32_t Get(const char16_t* (&tags)[eCOUNT]);
};
