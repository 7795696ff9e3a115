#pragma once
#include <cstddef>
#include <new>

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

  T* allocate(std::size_t n) {
    void* block = LcUMemory::Alloc(uint64_t(n) * sizeof(T), alignof(T), 0);
    if (!block) throw std::bad_alloc();
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
