#pragma once
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "foundation/LcUMemory.h"

// Reports a negative size; the vector call then fails.
void LcUVectorNegativeSize(int32_t size);

// A growable array of plain values on the sized allocator. It grows to what
// the allocator grants for the needed size plus one element, so the
// allocator's rounding becomes capacity.
template <typename T>
class LcUVector {
  static_assert(std::is_trivially_copyable<T>::value, "LcUVector holds plain values");

public:
  LcUVector() = default;
  LcUVector(const LcUVector& other) { *this = other; }
  LcUVector(LcUVector&& other) noexcept { Swap(other); }
  ~LcUVector() { Free(); }

  LcUVector& operator=(const LcUVector& other) {
    if (this == &other) return *this;
    if (!SetSize(other.size)) return *this;
    if (other.size) std::memcpy(data, other.data, sizeof(T) * size_t(other.size));
    return *this;
  }
  LcUVector& operator=(LcUVector&& other) noexcept {
    Swap(other);
    return *this;
  }

  int32_t Size() const { return size; }
  int32_t Capacity() const { return int32_t(bytes / sizeof(T)); }
  T* Data() { return data; }
  const T* Data() const { return data; }
  T& operator[](int32_t i) { return data[i]; }
  const T& operator[](int32_t i) const { return data[i]; }

  // New elements are zero. False on a negative size or when memory ran out.
  bool SetSize(int32_t n) {
    if (n < 0) {
      LcUVectorNegativeSize(n);
      return false;
    }
    if (!Reserve(n)) return false;
    if (n > size) std::memset(static_cast<void*>(data + size), 0, sizeof(T) * size_t(n - size));
    size = n;
    return true;
  }

  bool Reserve(int32_t n) {
    if (n < 0) {
      LcUVectorNegativeSize(n);
      return false;
    }
    if (n <= Capacity()) return true;
    uint64_t granted = LcUMemory::GoodSize((uint64_t(n) + 1) * sizeof(T));
    void* fresh = LcUMemory::Alloc(granted, alignof(T), 1);
    if (!fresh) return false;
    if (size) std::memcpy(fresh, static_cast<const void*>(data), sizeof(T) * size_t(size));
    Release();
    data = static_cast<T*>(fresh);
    bytes = granted;
    return true;
  }

  bool Add(const T& value) {
    if (size == Capacity()) {
      T copy = value;  // value may live in this vector
      if (!Reserve(size + 1)) return false;
      data[size++] = copy;
      return true;
    }
    data[size++] = value;
    return true;
  }

  bool Insert(int32_t index, const T& value) {
    if (index < 0 || index > size) return false;
    T copy = value;
    if (!Reserve(size + 1)) return false;
    std::memmove(static_cast<void*>(data + index + 1), static_cast<const void*>(data + index),
                 sizeof(T) * size_t(size - index));
    data[index] = copy;
    ++size;
    return true;
  }

  bool RemoveAt(int32_t index) {
    if (index < 0 || index >= size) return false;
    std::memmove(static_cast<void*>(data + index), static_cast<const void*>(data + index + 1),
                 sizeof(T) * size_t(size - index - 1));
    --size;
    return true;
  }

  // Keeps the memory.
  void Clear() { size = 0; }

  void Free() {
    Release();
    data = nullptr;
    bytes = 0;
    size = 0;
  }

  void Swap(LcUVector& other) {
    T* d = data;
    data = other.data;
    other.data = d;
    int32_t s = size;
    size = other.size;
    other.size = s;
    uint64_t b = bytes;
    bytes = other.bytes;
    other.bytes = b;
  }

private:
  void Release() {
    if (data) LcUMemory::Free(data, bytes, alignof(T));
  }

  T* data = nullptr;
  int32_t size = 0;
  uint64_t bytes = 0;
};
