// UTF-16 to UTF-8 encoding of arbitrary units, both surrogate modes; the
// decoder must give the units back, except U+FFFE and U+FFFF, which it refuses.
#include <cstdlib>
#include <vector>

#include "foundation/LcUString.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  std::vector<char16_t> units(size / 2 + 1, 0);
  for (size_t i = 0; i + 1 < size; i += 2) {
    char16_t u = char16_t(data[i] | (data[i + 1] << 8));
    units[i / 2] = u ? u : char16_t(0x20);
  }
  for (bool combine : {false, true}) {
    LcUStringA narrow;
    LcUString::UTF16ToUTF8(units.data(), narrow, combine);
    if (narrow.Length() > int32_t(3 * (units.size() - 1))) std::abort();
    LcUString back;
    LcUString::UTF8ToUTF16(narrow.Get(), -1, back);
    if (back.Length() != int32_t(units.size() - 1)) std::abort();
    for (int32_t i = 0; i < back.Length(); ++i) {
      char16_t u = units[size_t(i)];
      char16_t expected = (u == 0xFFFE || u == 0xFFFF) ? char16_t(0xFFFD) : u;
      if (back[i] != expected) std::abort();
    }
  }
  return 0;
}
