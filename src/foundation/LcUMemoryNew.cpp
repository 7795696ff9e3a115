#include <cstdlib>
#include <new>

#include "foundation/LcUMemory.h"

// The runtime's new-handler is not told the size of the request, and the
// out-of-memory handler must hear it, so operator new is the foundation's.
// Its delete pairs with it, which keeps sanitizers' pairing checks quiet.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size) {
  if (size == 0) size = 1;
  for (;;) {
    if (void* block = std::malloc(size)) return block;
    if (!LcUMemory::NewFailed(size)) throw std::bad_alloc();
  }
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
#pragma GCC diagnostic pop
