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
typedef unsigned __int128 Wide;

const uint64_t k1e16 = 10000000000000000ull;
const uint64_t k1e17 = 100000000000000000ull;

Wide Power10(int k) {
  Wide p = 1;
  while (k-- > 0) p *= 10;
  return p;
}

// "%.17g" layout of 17 digits and a decimal exponent: trailing zeros and a
// bare point go.
int32_t Layout(bool negative, uint64_t digits, int exponent, char* text) {
  char d[17];
  for (int i = 16; i >= 0; --i, digits /= 10) d[i] = char('0' + digits % 10);
  int last = 16;
  while (last > 0 && d[last] == '0') --last;
  char* at = text;
  if (negative) *at++ = '-';
  if (exponent < -4 || exponent >= 17) {
    *at++ = d[0];
    if (last > 0) {
      *at++ = '.';
      for (int i = 1; i <= last; ++i) *at++ = d[i];
    }
    *at++ = 'e';
    *at++ = exponent < 0 ? '-' : '+';
    int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude >= 100) *at++ = char('0' + magnitude / 100);
    *at++ = char('0' + magnitude / 10 % 10);
    *at++ = char('0' + magnitude % 10);
  } else if (exponent >= 0) {
    for (int i = 0; i <= exponent; ++i) *at++ = d[i];
    if (last > exponent) {
      *at++ = '.';
      for (int i = exponent + 1; i <= last; ++i) *at++ = d[i];
    }
  } else {
    *at++ = '0';
    *at++ = '.';
    for (int i = -1; i > exponent; --i) *at++ = '0';
    for (int i = 0; i <= last; ++i) *at++ = d[i];
  }
  *at = 0;
  return int32_t(at - text);
}

// The exact 17 digits of a fraction whose scaled value fits 128 bits: most
// numbers of a description. False leaves the value to the general conversion.
bool PrintExact(double value, char* text, int32_t& length) {
  if (!std::isfinite(value) || value == 0) return false;
  int binaryExponent = 0;
  double fraction = std::frexp(std::fabs(value), &binaryExponent);
  uint64_t mantissa = uint64_t(std::ldexp(fraction, 53));
  int shift = 53 - binaryExponent;
  if (shift <= 0 || shift > 126) return false;
  int exponent = int(std::floor(std::log10(std::fabs(value))));
  for (int attempt = 0; attempt < 3; ++attempt) {
    int scale = 16 - exponent;
    if (scale < 0 || scale > 22) return false;
    Wide scaled = Wide(mantissa) * Power10(scale);
    Wide quotient = scaled >> shift;
    if (quotient >= k1e17) {
      ++exponent;
      continue;
    }
    if (quotient < k1e16) {
      --exponent;
      continue;
    }
    // Round half to even, as the C library does.
    Wide rest = scaled - (quotient << shift);
    Wide half = Wide(1) << (shift - 1);
    if (rest > half || (rest == half && (quotient & 1))) ++quotient;
    if (quotient == k1e17) {
      quotient = k1e16;
      ++exponent;
    }
    length = Layout(value < 0, uint64_t(quotient), exponent, text);
    return true;
  }
  return false;
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

namespace {
// Whole numbers below 1e17 print all their digits under "%.17g"; they are
// most numbers of a description and need no general conversion.
bool IsPlainWhole(double value) {
  return value == std::trunc(value) && std::fabs(value) < 1e17 && !(value == 0 && std::signbit(value));
}
}  // namespace

int32_t LcUJsonNumber::PrintedSizeBound(double value) {
  if (value == 0) return std::signbit(value) ? 2 : 1;
  if (!IsPlainWhole(value)) return ePRINT_SIZE - 1;
  int64_t whole = int64_t(value);
  int32_t size = whole < 0 ? 2 : 1;
  for (uint64_t rest = uint64_t(whole < 0 ? -whole : whole); rest >= 10; rest /= 10) ++size;
  return size;
}

int32_t LcUJsonNumber::Print(double value, char (&text)[ePRINT_SIZE]) {
  if (IsPlainWhole(value)) {
    std::to_chars_result r = std::to_chars(text, text + ePRINT_SIZE - 1, int64_t(value));
    *r.ptr = 0;
    return int32_t(r.ptr - text);
  }
  int32_t length = 0;
  if (PrintExact(value, text, length)) return length;
  std::to_chars_result r = std::to_chars(text, text + ePRINT_SIZE - 1, value, std::chars_format::general, 17);
  *r.ptr = 0;
  return int32_t(r.ptr - text);
}
