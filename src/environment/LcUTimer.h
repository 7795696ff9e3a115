#pragma once
#include <cstdint>

// A deadline taken by LcUTime::StartTimer: on the tick count, on the
// high-resolution counter, or on both.
struct LcUTimer {
  enum : uint32_t { eLOW_CLOCK = 1, eHIGH_CLOCK = 2 };
  uint64_t lowStart = 0;
  uint64_t lowSpan = 0;
  uint64_t highStart = 0;
  uint64_t highSpan = 0;
  // In low ticks: how late the deadline may be noticed.
  uint64_t slack = 0;
  uint32_t flags = 0;
};
