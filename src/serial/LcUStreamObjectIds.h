#pragma once
#include <cstdint>

// The writer's table from object address to reference id: open addressing
// in one heap block, which the platform heap reuses from stream to stream.
class LcUStreamObjectIds {
public:
  LcUStreamObjectIds() = default;
  ~LcUStreamObjectIds() { Clear(); }
  LcUStreamObjectIds(const LcUStreamObjectIds&) = delete;
  LcUStreamObjectIds& operator=(const LcUStreamObjectIds&) = delete;

  // The id the object has, or `id` newly given; 0 when memory ran out.
  // `added` says which.
  uint32_t Insert(const void* object, uint32_t id, bool& added);
  void Clear();

private:
  struct Slot {
    const void* object;
    uint32_t id;
  };
  bool Grow();
  static uint64_t Hash(const void* object) {
    return (uint64_t(reinterpret_cast<uintptr_t>(object)) >> 3) * 0x9E3779B97F4A7C15ull;
  }

  Slot* slots = nullptr;
  uint32_t capacity = 0;  // a power of two
  uint32_t count = 0;
  uint32_t shift = 64;
};
