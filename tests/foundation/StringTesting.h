#pragma once
#include <clocale>
#include <initializer_list>
#include <string>

#include "foundation/LcUString.h"

// A string's text for comparisons, "<null>" for the null state.
inline std::u16string Text(const LcUString& s) {
  return s.IsNull() ? std::u16string(u"<null>") : std::u16string(s.Get(), size_t(s.Length()));
}
inline std::string Text(const LcUStringA& s) {
  return s.IsNull() ? std::string("<null>") : std::string(s.Get(), size_t(s.Length()));
}

// Switches one locale category to the first of names that gives a locale
// other than "C", and back at the end of the scope; active tells if one did.
class ScopedLocale {
public:
  ScopedLocale(int category, std::initializer_list<const char*> names) : category(category) {
    const char* current = std::setlocale(category, nullptr);
    saved = current ? current : "C";
    for (const char* name : names) {
      const char* set = std::setlocale(category, name);
      if (set && std::string(set) != "C" && std::string(set) != "POSIX") {
        active = true;
        break;
      }
    }
  }
  ~ScopedLocale() { std::setlocale(category, saved.c_str()); }
  bool active = false;

private:
  int category;
  std::string saved;
};
