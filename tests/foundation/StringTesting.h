#pragma once
#include <string>

#include "foundation/LcUString.h"

// A string's text for comparisons, "<null>" for the null state.
inline std::u16string Text(const LcUString& s) {
  return s.IsNull() ? std::u16string(u"<null>") : std::u16string(s.Get(), size_t(s.Length()));
}
inline std::string Text(const LcUStringA& s) {
  return s.IsNull() ? std::string("<null>") : std::string(s.Get(), size_t(s.Length()));
}
