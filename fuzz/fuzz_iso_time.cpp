#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "environment/LcUSysTime.h"

// Any text parses or is refused without harm; what parses formats back to
// a text that parses to the same time, and a text already in normal form
// comes back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LcUString text;
  for (size_t i = 0; i + 1 < size; i += 2) {
    char16_t unit = char16_t(data[i] | (data[i + 1] << 8));
    if (!unit) break;
    text.Append(unit);
  }
  int64_t time = -1;
  if (!LcUSysTime::ParseISOTime(text.Get() ? text.Get() : u"", time)) return 0;
  LcUString formatted;
  if (!LcUSysTime::FormatISOTime(time, formatted)) std::abort();
  int64_t again = -1;
  if (!LcUSysTime::ParseISOTime(formatted.Get(), again) || again != time) std::abort();
  // Only a day past the month's end or a leap second reads differently.
  int day = (text[8] - u'0') * 10 + (text[9] - u'0');
  bool mayCarry = day > 28 || text[17] == u'6';
  if (!mayCarry && !LcUString::Equal(formatted.Get(), text.Get())) std::abort();
  return 0;
}
