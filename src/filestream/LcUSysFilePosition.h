#pragma once
#include <cstdint>
#include <cstdio>

// Positions a buffered file past the 2 GiB of the plain C call.
class LcUSysFilePosition {
public:
  static bool Seek(FILE* stream, int64_t offset);
};
