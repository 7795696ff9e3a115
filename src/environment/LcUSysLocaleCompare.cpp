#include <cwctype>

#include "environment/LcUSysLocale.h"

namespace {
inline bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

bool IsLetter(char16_t c) {
  if (c < 0x80) return (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
  return std::iswalpha(wint_t(c)) != 0;
}

inline int32_t Sign(char16_t c, char16_t d) {
  return c < d ? -1 : 1;
}

// A digit against anything else: plain order against a letter, otherwise
// the digit sorts after (so "a1" follows "a_" and "a").
int32_t DigitAgainst(char16_t digit, char16_t other, bool ignoreCase) {
  if (!IsLetter(other)) return 1;
  if (ignoreCase) other = LcUString::ToLowerUnit(other);
  return Sign(digit, other);
}
}  // namespace

int32_t LcUSysLocale::CompareNatural(const char16_t* a, const char16_t* b, bool ignoreCase) {
  for (;;) {
    char16_t c = *a, d = *b;
    bool cDigit = IsDigit(c), dDigit = IsDigit(d);
    if (cDigit && dDigit) {
      if (c == u'0' || d == u'0') {
        // Fractions: digit by digit while both runs last.
        for (; IsDigit(*a) && IsDigit(*b); ++a, ++b)
          if (*a != *b) return Sign(*a, *b);
        continue;
      }
      // Integers: the longer run is larger, whatever its digits, so runs
      // of any length compare without conversion.
      const char16_t* aEnd = a;
      const char16_t* bEnd = b;
      while (IsDigit(*aEnd)) ++aEnd;
      while (IsDigit(*bEnd)) ++bEnd;
      if (aEnd - a != bEnd - b) return aEnd - a < bEnd - b ? -1 : 1;
      for (; a < aEnd; ++a, ++b)
        if (*a != *b) return Sign(*a, *b);
      continue;
    }
    if (cDigit) return DigitAgainst(c, d, ignoreCase);
    if (dDigit) return -DigitAgainst(d, c, ignoreCase);
    if (ignoreCase) {
      c = LcUString::ToLowerUnit(c);
      d = LcUString::ToLowerUnit(d);
    }
    if (c != d) return Sign(c, d);
    if (!c) return 0;
    ++a;
    ++b;
  }
}
