#pragma once
#include <cstdint>
#include <cstdio>

// Wide text from a text-mode stream, as fgetws reads it on Windows.
class LcUSysWideIO {
public:
  // Reads at most limit - 1 units, up to and including a newline, and
  // terminates them. False when nothing could be read. On Linux the bytes
  // are UTF-8, each bad sequence giving U+FFFD.
  static bool ReadLine(FILE* stream, char16_t* buffer, int32_t limit);
};
