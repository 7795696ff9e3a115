#pragma once
#include <cstdarg>
#include <mutex>

#include "foundation/LcUString.h"

// The scratch strings that all of LcUError's formatted writers share, and
// the lock that guards them. Recursive, because logging under it may post
// ("Too long to log"), and the log line formats under it in turn.
class LcUErrorScratch {
public:
  // Built on first use and never destroyed, so reports work at any time.
  static LcUErrorScratch& Get();

  // Format into the scratch of the format's width; a null format clears it.
  // Both return the text, never null.
  const char* Format(const char* format, va_list args);
  const char16_t* Format(const char16_t* format, va_list args);
  // Wide text into the narrow scratch as UTF-8.
  const char* ToUTF8(const char16_t* text);
  void Free();

  std::recursive_mutex lock;

private:
  LcUStringA narrow;
  LcUString wide;
};
