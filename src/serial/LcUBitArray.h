#pragma once
#include <cstdint>

// A fixed number of bits in 32-bit words.
class LcUBitArray {
public:
  LcUBitArray() = default;
  // All bits clear. A count whose words could not be allocated gives an
  // empty array.
  explicit LcUBitArray(uint32_t count);
  LcUBitArray(const LcUBitArray& other);
  LcUBitArray& operator=(const LcUBitArray& other);
  ~LcUBitArray();

  uint32_t Count() const { return count; }
  static uint32_t WordCount(uint32_t count) { return count ? ((count - 1) >> 5) + 1 : 0; }
  const uint32_t* Words() const { return words; }

  bool operator==(const LcUBitArray& other) const;
  bool operator!=(const LcUBitArray& other) const { return !(*this == other); }

  void ClearAll();
  // Indexes past the count are ignored, and test as clear.
  void Set(uint32_t index);
  void Clear(uint32_t index);
  bool Test(uint32_t index) const;
  uint32_t CountSet() const;

private:
  bool Allocate(uint32_t bits);
  void Release();

  uint32_t* words = nullptr;
  uint32_t count = 0;
};
