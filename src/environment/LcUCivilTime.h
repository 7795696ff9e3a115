#pragma once
#include <cstdint>

// Seconds since 1970 GMT and calendar fields, both ways, for any year: the
// arithmetic of the proleptic Gregorian calendar, with no time zone and no
// platform call.
struct LcUCivilTime {
  int64_t year;
  int32_t month;  // 1 to 12
  int32_t day;    // 1 to 31
  int32_t hour;
  int32_t minute;
  int32_t second;

  static LcUCivilTime FromSeconds(int64_t seconds);
  // Fields out of range carry over, as the C library's conversions do.
  int64_t ToSeconds() const;
};
