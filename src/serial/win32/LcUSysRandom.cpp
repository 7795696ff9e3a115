#include "serial/LcUSysRandom.h"

#include <windows.h>
#include <bcrypt.h>

#include <cstring>

bool LcUSysRandom::Fill(void* buffer, uint32_t size) {
  if (BCryptGenRandom(nullptr, static_cast<PUCHAR>(buffer), ULONG(size), BCRYPT_USE_SYSTEM_PREFERRED_RNG) == 0)
    return true;
  std::memset(buffer, 0, size);
  return false;
}
