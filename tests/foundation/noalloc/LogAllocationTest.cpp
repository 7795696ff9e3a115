// The log must work while the allocator is broken or not yet up: writing
// and wrapping it, and replaying it, allocate nothing. This program replaces
// the global allocation functions to count them, so it stands alone.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "foundation/LcUSysError.h"

namespace {
std::atomic<long> allocations{0};
}

// These are the allocation functions, so free pairs with their malloc.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void* operator new(std::size_t size) {
  ++allocations;
  if (void* p = std::malloc(size ? size : 1)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept {
  std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}
#pragma GCC diagnostic pop

TEST(LogAllocation, WritingWrappingAndReplayingAllocateNothing) {
  LcUSysError::InitSysError();
  std::string line(1000, 'x');
  line += '\n';
  long before = allocations.load();
  // Over two buffers' worth: the first fills, the ring wraps several times.
  for (int i = 0; i < 3000; ++i) LcUSysError::Log(line.c_str());
  long written = 0;
  LcUSysError::ReplayLog([](const char* text, void* context) { *static_cast<long*>(context) += long(std::strlen(text)); },
                         &written);
  EXPECT_EQ(before, allocations.load());
  EXPECT_GT(written, 2 * 524288 - 4096);
  LcUSysError::TermSysError();
}
