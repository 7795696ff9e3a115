#pragma once
#include <cstddef>

// The polymorphic heap base: the virtual destructor hands the sized delete
// the dynamic size, so each object goes back to the arena of its size.
class LcUDeletable {
public:
  virtual ~LcUDeletable();
  // Null on failure; the new-expression then constructs nothing.
  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* block, std::size_t size);
};
