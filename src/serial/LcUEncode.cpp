#include "serial/LcUEncode.h"

namespace {
const char kHex[] = "0123456789ABCDEF";

bool IsAlnum(uint8_t c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// out sized exactly once, then written through its buffer.
char* Sized(LcUStringA& out, uint64_t length) {
  out.Clear();
  if (length > 0x7FFFFFF0u || out.Reserve(int32_t(length)) < int32_t(length)) return nullptr;
  out.SetLength(int32_t(length));
  return out.GetBuffer();
}
}  // namespace

void LcUEncode::EncodeBase64(const void* data, uint32_t size, LcUStringA& out) {
  static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const uint8_t* in = static_cast<const uint8_t*>(data);
  uint32_t tail = size % 3;
  char* at = Sized(out, uint64_t(size / 3) * 4 + (tail ? tail + 1 : 0));
  if (!at) return;
  uint32_t i = 0;
  for (; i + 3 <= size; i += 3) {
    uint32_t v = uint32_t(in[i]) << 16 | uint32_t(in[i + 1]) << 8 | in[i + 2];
    *at++ = kAlphabet[v >> 18];
    *at++ = kAlphabet[(v >> 12) & 63];
    *at++ = kAlphabet[(v >> 6) & 63];
    *at++ = kAlphabet[v & 63];
  }
  if (tail) {
    uint32_t v = uint32_t(in[i]) << 16 | (tail == 2 ? uint32_t(in[i + 1]) << 8 : 0);
    *at++ = kAlphabet[v >> 18];
    *at++ = kAlphabet[(v >> 12) & 63];
    if (tail == 2) *at++ = kAlphabet[(v >> 6) & 63];
  }
}

void LcUEncode::EncodeHex(const void* data, uint32_t size, LcUStringA& out) {
  const uint8_t* in = static_cast<const uint8_t*>(data);
  char* at = Sized(out, uint64_t(size) * 2);
  if (!at) return;
  for (uint32_t i = 0; i < size; ++i) {
    *at++ = kHex[in[i] >> 4];
    *at++ = kHex[in[i] & 15];
  }
}

void LcUEncode::EncodeReadable(const void* data, uint32_t size, LcUStringA& out) {
  const uint8_t* in = static_cast<const uint8_t*>(data);
  uint64_t length = 0;
  for (uint32_t i = 0; i < size; ++i) length += IsAlnum(in[i]) ? 1 : 3;
  char* at = Sized(out, length);
  if (!at) return;
  for (uint32_t i = 0; i < size; ++i) {
    if (IsAlnum(in[i])) {
      *at++ = char(in[i]);
      continue;
    }
    *at++ = '/';
    *at++ = kHex[in[i] >> 4];
    *at++ = kHex[in[i] & 15];
  }
}
