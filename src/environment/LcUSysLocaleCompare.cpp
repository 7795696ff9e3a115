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

// The end, other characters, digits, letters: a digit sorts after any
// character that is neither digit nor letter and, as in plain order, before
// every letter. Ranking the others below letters too keeps the order
// transitive: "1" > "~" and "~" > "x" by plain order would make a circle
// with "x" > "1".
enum Rank { eEND, eOTHER, eDIGIT, eLETTER };

inline Rank RankOf(char16_t c) {
  return !c ? eEND : IsDigit(c) ? eDIGIT : IsLetter(c) ? eLETTER : eOTHER;
}
}  // namespace

int32_t LcUSysLocale::CompareNatural(const char16_t* a, const char16_t* b, bool ignoreCase) {
  for (;;) {
    char16_t c = *a, d = *b;
    if (IsDigit(c) && IsDigit(d)) {
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
    if (ignoreCase) {
      c = LcUString::ToLowerUnit(c);
      d = LcUString::ToLowerUnit(d);
    }
    if (c != d) {
      Rank cRank = RankOf(c), dRank = RankOf(d);
      return cRank == dRank ? Sign(c, d) : cRank < dRank ? -1 : 1;
    }
    if (!c) return 0;
    ++a;
    ++b;
  }
}
