#include "serial/LcUBitArray.h"

#include <cstring>

#include "foundation/LcUMemory.h"

LcUBitArray::LcUBitArray(uint32_t bits) {
  if (Allocate(bits)) ClearAll();
}

LcUBitArray::LcUBitArray(const LcUBitArray& other) {
  *this = other;
}

LcUBitArray::~LcUBitArray() {
  Release();
}

bool LcUBitArray::Allocate(uint32_t bits) {
  uint32_t n = WordCount(bits);
  if (n == 0) {
    count = bits;
    return true;
  }
  words = static_cast<uint32_t*>(LcUMemory::Alloc(uint64_t(n) * 4, 4, 1));
  count = words ? bits : 0;
  return words != nullptr;
}

void LcUBitArray::Release() {
  if (words) LcUMemory::Free(words, uint64_t(WordCount(count)) * 4, 4);
  words = nullptr;
  count = 0;
}

// Reallocates only when the word counts differ.
LcUBitArray& LcUBitArray::operator=(const LcUBitArray& other) {
  if (this == &other) return *this;
  if (WordCount(count) != WordCount(other.count)) {
    Release();
    if (!Allocate(other.count)) return *this;
  }
  count = other.count;
  if (words) std::memcpy(words, other.words, size_t(WordCount(count)) * 4);
  return *this;
}

bool LcUBitArray::operator==(const LcUBitArray& other) const {
  if (count != other.count) return false;
  return count == 0 || std::memcmp(words, other.words, size_t(WordCount(count)) * 4) == 0;
}

void LcUBitArray::ClearAll() {
  if (words) std::memset(words, 0, size_t(WordCount(count)) * 4);
}

void LcUBitArray::Set(uint32_t index) {
  if (index < count) words[index >> 5] |= 1u << (index & 31);
}

void LcUBitArray::Clear(uint32_t index) {
  if (index < count) words[index >> 5] &= ~(1u << (index & 31));
}

bool LcUBitArray::Test(uint32_t index) const {
  return index < count && (words[index >> 5] >> (index & 31) & 1u) != 0;
}

uint32_t LcUBitArray::CountSet() const {
  uint32_t set = 0;
  for (uint32_t i = 0, n = WordCount(count); i < n; ++i) {
    uint32_t w = words[i];
    while (w) {
      w &= w - 1;
      ++set;
    }
  }
  return set;
}
