#pragma once
#include <new>
#include <utility>

#include "foundation/LcUMemory.h"

// Objects of a class without a sized-delete base, made and destroyed on
// the sized allocator. New gives null when memory ran out.
class LcUSizedObject {
public:
  template <typename T, typename... Args>
  static T* New(Args&&... args) {
    void* block = LcUMemory::Alloc(sizeof(T), alignof(T), 0);
    return block ? new (block) T(std::forward<Args>(args)...) : nullptr;
  }
  // Null does nothing; the pointer is left null.
  template <typename T>
  static void Delete(T*& object) {
    if (!object) return;
    object->~T();
    LcUMemory::Free(object, sizeof(T), alignof(T));
    object = nullptr;
  }
};
