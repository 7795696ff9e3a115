#include "foundation/LcUDeletable.h"

#include "foundation/LcUMemory.h"

LcUDeletable::~LcUDeletable() = default;

void* LcUDeletable::operator new(std::size_t size) noexcept {
  return LcUMemory::Alloc(size, 8, 0);
}

void LcUDeletable::operator delete(void* block, std::size_t size) {
  LcUMemory::Free(block, size, 8);
}
