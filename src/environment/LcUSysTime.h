#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// The clocks: the high-resolution counter, when it is allowed and finer
// than the tick count, and the millisecond tick; dates and their texts.
class LcUSysTime {
public:
  enum { eISO_TIME_UNITS = 19, eLOW_FREQUENCY = 1000, eDEFAULT_LOW_RESOLUTION = 10000 };

  static LcUComponent component;
  // Decides on the counter by "model.performance.timing.allow_performance_counter_timing";
  // built into the options library, which holds that option.
  static bool Initialize();
  static void Terminate();
  // The decision itself: a frequency of 0 means there is no counter, a low
  // resolution of 0 that it could not be read.
  static void Configure(bool allowed, int64_t frequency, int64_t lowResolutionMicroseconds);

  // 0 while the counter is off.
  static uint64_t GetTicks();
  static int64_t GetFrequency();
  static uint64_t GetLowTicks();
  static int64_t GetLowFrequency() { return eLOW_FREQUENCY; }
  static int64_t GetResolutionMicroseconds();
  static bool IsHighResolution();
  // The tick count in seconds.
  static double GetSeconds();
  static double TicksToSeconds(uint64_t lowTicks);
  // Seconds since 1970.
  static int64_t GetTime();

  // In the user's formats, from the local or the UTC breakdown; size counts
  // units with the terminator.
  static bool FormatDate(int64_t time, char16_t* out, int32_t size, bool local);
  static bool FormatTimeOfDay(int64_t time, char16_t* out, int32_t size, bool local);
  static bool FormatDateTime(int64_t time, char16_t* out, int32_t size, bool local);

  // "YYYY-MM-DDTHH:MM:SS" in UTC, each field all digits; out-of-range days
  // and seconds carry over. Times before 1970 or after 3000 are refused.
  static bool ParseISOTime(const char16_t* text, int64_t& out);
  static bool FormatISOTime(int64_t time, LcUString& out);

  // 100-nanosecond units since 1601 to seconds since 1970.
  static int64_t FileTimeToTime(uint64_t fileTime);

private:
  // The platform's part.
  static int64_t QueryFrequency();
  static int64_t QueryLowResolution();
  static uint64_t ReadCounter();
  static uint64_t ReadLowTicks();
  static int64_t ReadTime();
  static bool FormatPart(int64_t time, bool date, char16_t* out, int32_t size, bool local);
};
