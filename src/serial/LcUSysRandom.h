#pragma once
#include <cstdint>

// Cryptographic random bytes from the system.
class LcUSysRandom {
public:
  // False, with the buffer zeroed, when the system gave none.
  static bool Fill(void* buffer, uint32_t size);
};
