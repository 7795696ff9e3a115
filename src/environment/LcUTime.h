#pragma once
#include <cstdint>

#include "environment/LcUTimer.h"
#include "foundation/LcUComponent.h"

// The preferred clock and timers on it. The counter is preferred only by
// "model.performance.timing.prefer_performance_counter_timing" and only
// while LcUSysTime has it on.
class LcUTime {
public:
  static LcUComponent component;
  // Built into the options library, which holds the preference.
  static bool Initialize();
  static void Terminate();
  // Takes the counter's state from LcUSysTime; the preference is dropped
  // while the counter is off.
  static void Configure(bool preferHighResolution);

  // The preferred clock's tick.
  static void Now(uint64_t& out);
  static double GetSecondsPerTick();
  static bool PrefersHighResolution();
  static void StartTimer(LcUTimer& timer, int64_t micros, int64_t slack);
  // Past the deadline on the clock that keeps it; with both clocks the
  // tick count ends a timer whose counter went astray once past the slack.
  static bool HasExpired(const LcUTimer& timer);
};
