#include "serial/LcUStreamText.h"

#include <cctype>
#include <charconv>
#include <limits>
#include <cstring>

namespace {
uint32_t Padded(char* out, const char* digits, uint32_t length, int32_t width) {
  uint32_t pad = width > int32_t(length) ? uint32_t(width) - length : 0;
  out[0] = ' ';
  std::memset(out + 1, ' ', pad);
  std::memcpy(out + 1 + pad, digits, length);
  return 1 + pad + length;
}

// scanf skips a sign before the digits, which from_chars does not.
const char* SkipPlus(const char* word, bool& negative) {
  negative = *word == '-';
  return *word == '+' || *word == '-' ? word + 1 : word;
}
}  // namespace

namespace LcUStreamText {
uint32_t FormatSigned(char* out, int64_t value, int32_t width) {
  char digits[24];
  char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return Padded(out, digits, uint32_t(end - digits), width);
}

uint32_t FormatHex(char* out, uint64_t value, int32_t width) {
  char digits[24];
  char* end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
  return Padded(out, digits, uint32_t(end - digits), width);
}

uint32_t FormatFloat(char* out, double value, int32_t digits, bool single) {
  char text[48];
  std::to_chars_result r = single ? std::to_chars(text, text + sizeof text, float(value), std::chars_format::general, digits)
                                  : std::to_chars(text, text + sizeof text, value, std::chars_format::general, digits);
  return Padded(out, text, uint32_t(r.ptr - text), digits + 2);
}

bool ScanSigned(const char* word, int64_t& value) {
  bool negative;
  const char* digits = SkipPlus(word, negative);
  uint64_t magnitude = 0;
  std::from_chars_result r = std::from_chars(digits, digits + std::strlen(digits), magnitude, 10);
  if (r.ptr == digits) return false;
  value = negative ? int64_t(0 - magnitude) : int64_t(magnitude);
  return true;
}

bool ScanHex(const char* word, uint64_t& value) {
  bool negative;
  const char* digits = SkipPlus(word, negative);
  if (digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X') && std::isxdigit(static_cast<unsigned char>(digits[2])))
    digits += 2;
  std::from_chars_result r = std::from_chars(digits, digits + std::strlen(digits), value, 16);
  if (r.ptr == digits) return false;
  if (negative) value = 0 - value;
  return true;
}

template <typename Real>
static bool ScanReal(const char* word, Real& value) {
  // from_chars takes a minus but not a plus.
  const char* text = *word == '+' ? word + 1 : word;
  std::from_chars_result r = std::from_chars(text, text + std::strlen(text), value);
  if (r.ptr == text) return false;
  if (r.ec == std::errc::result_out_of_range) {
    // As strtod: too small is zero, too large is infinite.
    const char* e = std::strpbrk(text, "eE");
    bool tiny = e && e < r.ptr && e[1] == '-';
    value = tiny ? Real(0) : (*text == '-' ? -std::numeric_limits<Real>::infinity() : std::numeric_limits<Real>::infinity());
  }
  return true;
}

bool ScanDouble(const char* word, double& value) {
  return ScanReal(word, value);
}

bool ScanSingle(const char* word, float& value) {
  return ScanReal(word, value);
}
}  // namespace LcUStreamText
