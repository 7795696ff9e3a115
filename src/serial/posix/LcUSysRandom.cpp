#include "serial/LcUSysRandom.h"

#include <sys/random.h>

#include <cerrno>
#include <cstring>

bool LcUSysRandom::Fill(void* buffer, uint32_t size) {
  uint8_t* at = static_cast<uint8_t*>(buffer);
  uint32_t left = size;
  while (left > 0) {
    ssize_t got = getrandom(at, left, 0);
    if (got < 0) {
      if (errno == EINTR) continue;
      std::memset(buffer, 0, size);
      return false;
    }
    at += got;
    left -= uint32_t(got);
  }
  return true;
}
