#pragma once
#include <cstdint>
#include "foundation/LcUString.h"

// Values read from an answer's raw headers ("Name: value" lines after the
// status line), the same for every HTTP client underneath. Names match
// without regard to case, as HTTP has them.
class LcUHttpHeaders {
public:
  // The first line named so, trimmed; false when there is none.
  static bool Find(const char16_t* raw, const char16_t* name, LcUString& value);
  // "Content-Length: N".
  static bool GetContentLength(const char16_t* raw, uint64_t& size);
  // "Content-Range: bytes FIRST-LAST/TOTAL": the total.
  static bool GetContentRangeTotal(const char16_t* raw, uint64_t& total);
  // The size behind the answer to "Range: bytes=0-1": only a value that
  // starts "bytes 0-1/" counts.
  static bool GetFirstRangeTotal(const char16_t* value, uint64_t& total);
  // A request path as it may go on the request line: blanks, controls and
  // the UTF-8 bytes of other characters percent-encoded, "%" left alone so
  // that an encoded path goes as it is.
  static void RequestTarget(const char16_t* path, LcUString& out);
  // An HTTP date in any of its three forms, as seconds since 1970 GMT.
  static bool ParseDate(const char16_t* text, int64_t& seconds);
};
