#pragma once
#include <cstdint>

#include "foundation/LcUStringA.h"

// Byte encoders into text. Each replaces out.
class LcUEncode {
public:
  // Standard alphabet, no "=" padding: a tail of 1 byte gives two
  // characters, a tail of 2 bytes three.
  static void EncodeBase64(const void* data, uint32_t size, LcUStringA& out);
  // Two upper-case digits a byte.
  static void EncodeHex(const void* data, uint32_t size, LcUStringA& out);
  // ASCII digits and letters as they are, any other byte as "/" and two hex digits.
  static void EncodeReadable(const void* data, uint32_t size, LcUStringA& out);
};
