#pragma once
#include <cstdio>

#include "foundation/LcUString.h"

// Wide text goes to the terminal as UTF-8.
inline void PrintWide(FILE* out, const char16_t* text) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(text ? text : u"", narrow, true);
  std::fputs(narrow.Get(), out);
}

// "  ok    what", or "  FAIL  what" with what to do on the next line; the
// check's result passed through.
inline bool Check(bool ok, const char* what, const char* todo) {
  std::printf("  %-5s %s\n", ok ? "ok" : "FAIL", what);
  if (!ok) std::printf("        to do: %s\n", todo);
  return ok;
}
