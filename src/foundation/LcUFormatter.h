#pragma once
#include <cstdarg>
#include <cstdint>

// Bounded printf-style formatting with the same conversions on every
// platform. In both widths %ls is UTF-16 text and %hs narrow text; a plain
// %s is narrow in a narrow format and UTF-16 in a wide one.
class LcUFormatter {
public:
  // Writes at most capacity units including the terminator (always written
  // when capacity > 0) and returns the length the whole text needs, or -1 for
  // a null format.
  static int32_t Format(char* target, int32_t capacity, const char* format, va_list args);
  static int32_t Format(char16_t* target, int32_t capacity, const char16_t* format, va_list args);
};
