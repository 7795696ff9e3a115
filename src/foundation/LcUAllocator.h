#pragma once
#include <cstddef>

#include "foundation/LcUMemory.h"

// Standard containers on the sized allocator: the container knows each
// block's size, so it is given back exactly.
template <typename T>
class LcUAllocator {
public:
  using value_type = T;
  LcUAllocator() noexcept = default;
  template <typename U>
  LcUAllocator(const LcUAllocator<U>&) noexcept {}

  // A container cannot be handed null, and the foundation does not throw:
  // a request the handler could not rescue ends the process.
  T* allocate(std::size_t n) {
    uint64_t bytes = uint64_t(n) * sizeof(T);
    void* block = LcUMemory::Alloc(bytes, alignof(T), 0);
    if (!block) LcUMemory::OutOfMemory(bytes);
    return static_cast<T*>(block);
  }
  void deallocate(T* block, std::size_t n) noexcept { LcUMemory::Free(block, uint64_t(n) * sizeof(T), alignof(T)); }

  template <typename U>
  bool operator==(const LcUAllocator<U>&) const noexcept {
    return true;
  }
  template <typename U>
  bool operator!=(const LcUAllocator<U>&) const noexcept {
    return false;
  }
};
