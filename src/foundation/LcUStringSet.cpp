#include "foundation/LcUStringSet.h"

#include <algorithm>

int LcUStringSet::Compare(const char16_t* a, const char16_t* b) const {
  return ignoreCase ? LcUString::CompareNoCase(a, b) : LcUString::Compare(a, b);
}

bool LcUStringSet::Insert(const char16_t* text) {
  if (!text || !*text) return false;
  auto place = std::lower_bound(items.begin(), items.end(), text, [this](const LcUString& held, const char16_t* wanted) {
    return Compare(held.Get(), wanted) < 0;
  });
  if (place != items.end() && Compare(place->Get(), text) == 0) return false;
  LcUString copy(text);
  if (!copy.Get()) return false;
  items.insert(place, static_cast<LcUString&&>(copy));
  return true;
}
