#include <cstring>

#include "serial/LcUGuid.h"

const char* const LcUGuid::kDefaultCompactAlphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";

namespace {
const int kTextLength = 36;
const int kCompactLength = 22;

int HexValue(char16_t c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

template <typename Unit>
int32_t Length(const Unit* text, int32_t limit) {
  int32_t n = 0;
  while (n <= limit && text[n]) ++n;
  return n;
}

// The 16 bytes in network order, read from the hyphenated text.
template <typename Unit>
bool ParseText(const Unit* text, uint8_t (&bytes)[16]) {
  if (!text || Length(text, kTextLength) != kTextLength) return false;
  int byte = 0;
  for (int i = 0; i < kTextLength;) {
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      if (text[i++] != '-') return false;
      continue;
    }
    int high = HexValue(text[i]), low = HexValue(text[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes[byte++] = uint8_t(high << 4 | low);
    i += 2;
  }
  return true;
}

template <typename Unit>
bool ParseCompact(const Unit* text, const char* alphabet, uint8_t (&bytes)[16]) {
  if (!text || Length(text, kCompactLength) != kCompactLength) return false;
  if (!alphabet) alphabet = LcUGuid::kDefaultCompactAlphabet;
  int8_t lookup[256];
  std::memset(lookup, -1, sizeof lookup);
  for (int i = 0; i < 64 && alphabet[i]; ++i) lookup[uint8_t(alphabet[i])] = int8_t(i);
  static const int kGroupChars[6] = {2, 4, 4, 4, 4, 4};
  static const int kGroupBytes[6] = {1, 3, 3, 3, 3, 3};
  int at = 0, byte = 0;
  for (int group = 0; group < 6; ++group) {
    uint32_t value = 0;
    for (int i = 0; i < kGroupChars[group]; ++i, ++at) {
      Unit c = text[at];
      if (uint32_t(c) > 0xFF || lookup[uint8_t(c)] < 0) return false;
      value = value << 6 | uint32_t(lookup[uint8_t(c)]);
    }
    for (int i = kGroupBytes[group] - 1; i >= 0; --i) bytes[byte++] = uint8_t(value >> (8 * i));
  }
  return true;
}

void Print(const LcUGuid& guid, char (&text)[kTextLength + 1]) {
  static const char kDigits[] = "0123456789abcdef";
  uint8_t bytes[16] = {};
  guid.ToBytes(bytes);
  int at = 0;
  for (int i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text[at++] = '-';
    text[at++] = kDigits[bytes[i] >> 4];
    text[at++] = kDigits[bytes[i] & 15];
  }
  text[at] = 0;
}

// Nil and false when the text did not parse.
bool Take(LcUGuid& guid, bool parsed, const uint8_t (&bytes)[16]) {
  if (parsed)
    guid.FromBytes(bytes);
  else
    guid = LcUGuid();
  return parsed;
}
}  // namespace

bool LcUGuid::FromText(const char* text) {
  uint8_t bytes[16] = {};
  return Take(*this, ParseText(text, bytes), bytes);
}

bool LcUGuid::FromText(const char16_t* text) {
  uint8_t bytes[16] = {};
  return Take(*this, ParseText(text, bytes), bytes);
}

bool LcUGuid::FromCompactText(const char* text, const char* alphabet) {
  uint8_t bytes[16] = {};
  return Take(*this, ParseCompact(text, alphabet, bytes), bytes);
}

bool LcUGuid::FromCompactText(const char16_t* text, const char* alphabet) {
  uint8_t bytes[16] = {};
  return Take(*this, ParseCompact(text, alphabet, bytes), bytes);
}

void LcUGuid::ToText(LcUStringA& out) const {
  char text[kTextLength + 1];
  Print(*this, text);
  out.Assign(text, kTextLength);
}

void LcUGuid::ToText(LcUString& out) const {
  char text[kTextLength + 1];
  Print(*this, text);
  LcUString::AsciiToWide(text, out);
}
