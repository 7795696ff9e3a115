#include "TwfileOptions.h"

#include <cstddef>

namespace {
// A whole decimal number, at least minimum.
bool ParseCount(const char16_t* text, int64_t minimum, int64_t& out) {
  if (!text || !*text) return false;
  int64_t value = 0;
  for (const char16_t* p = text; *p; ++p) {
    if (*p < u'0' || *p > u'9' || value > (INT64_MAX - 9) / 10) return false;
    value = value * 10 + (*p - u'0');
  }
  if (value < minimum) return false;
  out = value;
  return true;
}
}  // namespace

bool TwfileOptions::Parse(const std::vector<LcUString>& arguments, LcUString& error) {
  for (size_t i = 1; i < arguments.size(); ++i) {
    const LcUString& a = arguments[i];
    const char16_t* value = i + 1 < arguments.size() ? arguments[i + 1].Get() : nullptr;
    auto number = [&](int64_t minimum, int64_t& out) {
      if (!ParseCount(value, minimum, out)) {
        error.Format(u"%ls takes a whole number of at least %lld", a.Get(), static_cast<long long>(minimum));
        return false;
      }
      ++i;
      return true;
    };
    if (LcUString::Equal(a.Get(), u"--no-cache")) {
      noCache = true;
    } else if (LcUString::Equal(a.Get(), u"--trace")) {
      trace = true;
    } else if (LcUString::Equal(a.Get(), u"--cache-dir")) {
      if (!value || !*value) {
        error = u"--cache-dir takes a folder";
        return false;
      }
      cacheDir = value;
      ++i;
    } else if (LcUString::Equal(a.Get(), u"--max-cache")) {
      if (!number(0, maxCacheMB)) return false;
    } else if (LcUString::Equal(a.Get(), u"--offset")) {
      if (!number(0, offset)) return false;
    } else if (LcUString::Equal(a.Get(), u"--length")) {
      if (!number(0, length)) return false;
    } else if (a.Length() > 1 && a[0] == u'-') {
      error.Format(u"unknown option %ls", a.Get());
      return false;
    } else if (command.IsNull()) {
      command = a;
    } else {
      operands.push_back(a);
    }
  }
  if (command.IsNull()) {
    error = u"no command";
    return false;
  }
  return true;
}
