#include "serial/LcUJsonNumber.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsHexDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? char(c + 32) : c;
}

// True when text starts with word (lower case), in any case.
bool StartsWithNoCase(const char* text, const char* word) {
  for (; *word; ++text, ++word)
    if (Lower(*text) != *word) return false;
  return true;
}

// Digits (of either kind) before and after an optional point.
const char* Mantissa(const char* at, bool hex, bool& anyDigit, int& leadingExponent) {
  // leadingExponent: the power of the first significant digit, in digits,
  // to tell overflow from underflow later.
  bool (*digit)(char) = hex ? IsHexDigit : IsDigit;
  int integerDigits = 0, zerosAfterPoint = 0;
  bool significant = false;
  while (digit(*at)) {
    significant = significant || *at != '0';
    if (significant) ++integerDigits;
    anyDigit = true;
    ++at;
  }
  if (*at == '.') {
    ++at;
    while (digit(*at)) {
      if (!significant && *at == '0') ++zerosAfterPoint;
      significant = significant || *at != '0';
      anyDigit = true;
      ++at;
    }
  }
  leadingExponent = integerDigits > 0 ? integerDigits : -zerosAfterPoint;
  return at;
}

// The exponent mark and its sign are taken even without digits.
const char* Exponent(const char* at, char mark, long& exponent) {
  exponent = 0;
  if (Lower(*at) != mark) return at;
  ++at;
  bool negative = *at == '-';
  if (*at == '+' || *at == '-') ++at;
  while (IsDigit(*at)) {
    if (exponent < 100000) exponent = exponent * 10 + (*at - '0');
    ++at;
  }
  if (negative) exponent = -exponent;
  return at;
}
}  // namespace

size_t LcUJsonNumber::Scan(const char* text, double& value) {
  const char* at = text;
  bool negative = *at == '-';
  if (negative) ++at;
  double sign = negative ? -1.0 : 1.0;
  if (StartsWithNoCase(at, "inf")) {
    at += 3;
    if (Lower(*at) == 'i') {
      if (!StartsWithNoCase(at, "inity")) return 0;
      at += 5;
    }
    value = std::copysign(std::numeric_limits<double>::infinity(), sign);
    return size_t(at - text);
  }
  if (StartsWithNoCase(at, "nan")) {
    value = std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
    return size_t(at - text + 3);
  }
  bool hex = at[0] == '0' && Lower(at[1]) == 'x';
  const char* digits = hex ? at + 2 : at;
  bool anyDigit = false;
  int leadingExponent = 0;
  const char* end = Mantissa(digits, hex, anyDigit, leadingExponent);
  if (!anyDigit) return 0;
  long exponent = 0;
  end = Exponent(end, hex ? 'p' : 'e', exponent);
  double magnitude = 0;
  std::from_chars_result r =
      std::from_chars(digits, end, magnitude, hex ? std::chars_format::hex : std::chars_format::general);
  if (r.ec == std::errc::result_out_of_range) {
    long power = hex ? exponent + 4L * leadingExponent : exponent + leadingExponent;
    magnitude = power > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  value = std::copysign(magnitude, sign);
  return size_t(end - text);
}

int32_t LcUJsonNumber::Print(double value, char (&text)[ePRINT_SIZE]) {
  // Whole numbers below 1e17 print all their digits under "%.17g"; they
  // are most numbers of a description and need no general conversion.
  if (value == std::trunc(value) && std::fabs(value) < 1e17 && !(value == 0 && std::signbit(value))) {
    std::to_chars_result r = std::to_chars(text, text + ePRINT_SIZE - 1, int64_t(value));
    *r.ptr = 0;
    return int32_t(r.ptr - text);
  }
  std::to_chars_result r = std::to_chars(text, text + ePRINT_SIZE - 1, value, std::chars_format::general, 17);
  *r.ptr = 0;
  return int32_t(r.ptr - text);
}
