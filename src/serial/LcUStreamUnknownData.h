#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

// What an object of a class unknown to the reader left behind once its
// known base had read its part: the rest of its tokens, kept to be written
// out again with the object.
class LcUStreamUnknownData : public LcUDeletable {
public:
  LcUStreamUnknownData(int32_t entry, void* block, const uint8_t* data, uint32_t size);
  ~LcUStreamUnknownData() override;
  LcUStreamUnknownData(const LcUStreamUnknownData&) = delete;
  LcUStreamUnknownData& operator=(const LcUStreamUnknownData&) = delete;

  // The class's entry in the reader's working format.
  int32_t entry;
  // Null and 0 for an empty tail.
  const uint8_t* data;
  uint32_t size;
  // The tail is a debug stream in the encoding of the stream it came from.
  int32_t ascii = 0;
  int32_t doublePrecision = 1;
  int32_t textEncoding = 0;
  // The id its first object had: ids from here on are the tail's own, ids
  // below it refer to objects around it.
  uint32_t firstId = 100;

private:
  void* block;
};
