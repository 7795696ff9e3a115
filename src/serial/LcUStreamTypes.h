#pragma once
#include <cstdint>
#include <cstring>

#include "serial/LcUStream.h"

// Facts of the type table that writer and reader both use.
namespace LcUStreamTypes {
// Bytes of one element in the caller's memory; a Float is always a double.
inline uint32_t MemorySize(int32_t code) {
  switch (code) {
    case LcUStream::eNAT8: return 1;
    case LcUStream::eINT16:
    case LcUStream::eNAT16: return 2;
    case LcUStream::eSINGLE: return 4;
    case LcUStream::eDOUBLE:
    case LcUStream::eFLOAT:
    case LcUStream::eNAT64: return 8;
    default: return 4;
  }
}

inline int32_t ArrayCode(int32_t code) {
  switch (code) {
    case LcUStream::eNAT8: return LcUStream::eNAT8_ARRAY;
    case LcUStream::eINT16: return LcUStream::eINT16_ARRAY;
    case LcUStream::eNAT16: return LcUStream::eNAT16_ARRAY;
    case LcUStream::eINT32: return LcUStream::eINT32_ARRAY;
    case LcUStream::eSINGLE: return LcUStream::eSINGLE_ARRAY;
    case LcUStream::eDOUBLE: return LcUStream::eDOUBLE_ARRAY;
    case LcUStream::eFLOAT: return LcUStream::eFLOAT_ARRAY;
    case LcUStream::eNAT64: return LcUStream::eNAT64_ARRAY;
    default: return LcUStream::eNAT32_ARRAY;
  }
}

// The type whose ascii form a value takes: Boolean, Enum and Bitfield are
// Nat32s, a Float is a Double or a Single as the header says.
inline int32_t AsciiForm(int32_t code, bool doublePrecision) {
  switch (code) {
    case LcUStream::eBOOLEAN:
    case LcUStream::eENUM:
    case LcUStream::eBITFIELD: return LcUStream::eNAT32;
    case LcUStream::eFLOAT: return doublePrecision ? LcUStream::eDOUBLE : LcUStream::eSINGLE;
    default: return code;
  }
}

inline uint32_t ValuesPerLine(int32_t form) {
  switch (form) {
    case LcUStream::eNAT8: return 18;
    case LcUStream::eINT16: return 10;
    case LcUStream::eNAT16: return 15;
    case LcUStream::eINT32: return 6;
    case LcUStream::eSINGLE: return 6;
    case LcUStream::eDOUBLE: return 3;
    case LcUStream::eNAT64: return 4;
    default: return 8;
  }
}

inline uint32_t LowBits(uint32_t count) {
  return count >= 32 ? ~0u : (1u << count) - 1;
}

template <typename T>
inline T Load(const uint8_t* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}
}  // namespace LcUStreamTypes
