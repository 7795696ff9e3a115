#pragma once
#include <cstdint>

// The reader's table of objects by id - 100, with the entry each was made
// as. One heap block, grown by the platform heap's realloc.
class LcUStreamObjectList {
public:
  struct Row {
    void* object;
    int32_t entry;
  };

  LcUStreamObjectList() = default;
  ~LcUStreamObjectList() { Clear(); }
  LcUStreamObjectList(const LcUStreamObjectList&) = delete;
  LcUStreamObjectList& operator=(const LcUStreamObjectList&) = delete;

  bool Add(void* object, int32_t entry) {
    if (count == capacity && !Grow()) return false;
    rows[count++] = {object, entry};
    return true;
  }
  uint32_t Size() const { return count; }
  const Row& operator[](uint32_t index) const { return rows[index]; }
  void Clear();

private:
  bool Grow();

  Row* rows = nullptr;
  uint32_t count = 0;
  uint32_t capacity = 0;
};
