#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwctype>
#include <initializer_list>

#include "environment/LcUSysLocale.h"

// Three texts from the input, split at NUL units: the comparison is
// reflexive and antisymmetric, with and without case, and transitive unless
// the texts hold digits, letters and other characters all three: a digit
// sorts after other characters, before letters, while those two keep their
// plain order, which can go round ("1" > "~" > "x" > "1").
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LcUString texts[3];
  int count = 0;
  for (size_t i = 0; i + 1 < size && count < 3; i += 2) {
    char16_t unit = char16_t(data[i] | (data[i + 1] << 8));
    if (unit) texts[count].Append(unit);
    else ++count;
  }
  const char16_t* t[3];
  bool digits = false, letters = false, others = false;
  for (int i = 0; i < 3; ++i) {
    t[i] = texts[i].Get() ? texts[i].Get() : u"";
    for (const char16_t* u = t[i]; *u; ++u) {
      bool digit = *u >= u'0' && *u <= u'9';
      bool letter = *u < 0x80 ? (*u | 0x20) >= u'a' && (*u | 0x20) <= u'z' : std::iswalpha(wint_t(*u)) != 0;
      digits = digits || digit;
      letters = letters || letter;
      others = others || (!digit && !letter);
    }
  }
  bool ordered = !(digits && letters && others);
  for (bool ignoreCase : {false, true}) {
    int32_t c[3][3];
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        c[i][j] = LcUSysLocale::CompareNatural(t[i], t[j], ignoreCase);
        if (c[i][j] < -1 || c[i][j] > 1) std::abort();
      }
    for (int i = 0; i < 3; ++i) {
      if (c[i][i] != 0) std::abort();
      for (int j = 0; j < 3; ++j) {
        if (c[i][j] != -c[j][i]) std::abort();
        for (int k = 0; ordered && k < 3; ++k)
          if (c[i][j] <= 0 && c[j][k] <= 0 && c[i][k] > 0) std::abort();
      }
    }
  }
  return 0;
}
