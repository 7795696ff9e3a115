#pragma once
#include <cstdint>

#include "serial/LcUDict.h"

namespace LcUDictUniqueNameDetail {
template <typename String, typename Unit>
void AppendNumber(String& text, int64_t value) {
  Unit digits[24];
  int n = 0;
  do {
    digits[n++] = Unit('0' + value % 10);
    value /= 10;
  } while (value > 0);
  while (n > 0) text.Append(digits[--n]);
}

template <typename String, typename Unit>
void Compose(const String& base, const Unit* suffix, int64_t counter, String& out) {
  out = base;
  bool blank = base.Length() > 0 && base[base.Length() - 1] == Unit(' ');
  if (!blank) out.Append(Unit(' '));
  out.Append(Unit('('));
  if (suffix) {
    out.Append(suffix);
    if (counter > 0) out.Append(Unit(' '));
  }
  if (counter > 0 || !suffix) AppendNumber<String, Unit>(out, counter);
  out.Append(Unit(')'));
}
}  // namespace LcUDictUniqueNameDetail

// A name that is free in dict, made from name. 0 when name itself is free;
// otherwise 1, with a trailing "(n)" raised until the text is free. A
// suffix is tried first, as "base (suffix)", then "base (suffix n)" when
// name carried a counter n.
template <typename String, typename Value, typename Unit>
int MakeUniqueName(const LcUDict<String, Value>& dict, String& out, const Unit* name, const Unit* suffix) {
  using namespace LcUDictUniqueNameDetail;
  static const Unit kEmpty[1] = {0};
  if (!name) name = kEmpty;
  if (!dict.Contains(name)) {
    out = name;
    return 0;
  }
  String base(name);
  int64_t counter = 0;
  int32_t length = base.Length();
  if (length >= 3 && name[length - 1] == Unit(')')) {
    int32_t at = length - 2;
    while (at >= 0 && name[at] >= Unit('0') && name[at] <= Unit('9')) --at;
    // At most nine digits keep the counter far from overflow.
    if (at >= 0 && at < length - 2 && length - 2 - at <= 9 && name[at] == Unit('(')) {
      for (int32_t i = at + 1; i < length - 1; ++i) counter = counter * 10 + (name[i] - Unit('0'));
      String stripped(name, at);
      base.Swap(stripped);
    }
  }
  if (suffix && *suffix) {
    Compose(base, suffix, 0, out);
    if (!dict.Contains(out.Get())) return 1;
    if (counter > 0) {
      Compose(base, suffix, counter, out);
      if (!dict.Contains(out.Get())) return 1;
    }
  }
  do {
    ++counter;
    Compose(base, static_cast<const Unit*>(nullptr), counter, out);
  } while (dict.Contains(out.Get()));
  return 1;
}
