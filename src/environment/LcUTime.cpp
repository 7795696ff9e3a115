#include "environment/LcUTime.h"

#include "environment/LcUSysTime.h"

LcUComponent LcUTime::component;

namespace {
bool preferHighResolution = false;
double secondsPerHighTick = 0;
const double secondsPerLowTick = 1.0 / LcUSysTime::eLOW_FREQUENCY;
double secondsPerTick = secondsPerLowTick;

// rate × micros / 1000000, split so that spans of years don't overflow.
uint64_t Scale(int64_t rate, int64_t micros) {
  if (micros <= 0) return 0;
  return uint64_t(micros / 1000000 * rate + micros % 1000000 * rate / 1000000);
}
}  // namespace

void LcUTime::Configure(bool prefer) {
  bool available = LcUSysTime::IsHighResolution();
  secondsPerHighTick = available ? 1.0 / double(LcUSysTime::GetFrequency()) : 0;
  preferHighResolution = prefer && available;
  secondsPerTick = preferHighResolution ? secondsPerHighTick : secondsPerLowTick;
}

void LcUTime::Now(uint64_t& out) {
  out = preferHighResolution ? LcUSysTime::GetTicks() : LcUSysTime::GetLowTicks();
}

double LcUTime::GetSecondsPerTick() {
  return secondsPerTick;
}

bool LcUTime::PrefersHighResolution() {
  return preferHighResolution;
}

void LcUTime::StartTimer(LcUTimer& timer, int64_t micros, int64_t slack) {
  const int64_t resolution = LcUSysTime::GetResolutionMicroseconds();
  timer = LcUTimer();
  if (!LcUSysTime::IsHighResolution() || (!preferHighResolution && slack >= resolution)) {
    timer.lowStart = LcUSysTime::GetLowTicks();
    timer.lowSpan = Scale(LcUSysTime::eLOW_FREQUENCY, micros);
    timer.flags = LcUTimer::eLOW_CLOCK;
    return;
  }
  timer.highStart = LcUSysTime::GetTicks();
  timer.highSpan = Scale(LcUSysTime::GetFrequency(), micros);
  timer.flags = LcUTimer::eHIGH_CLOCK;
  timer.lowStart = LcUSysTime::GetLowTicks();
  if (micros <= resolution) {
    // Too short for the tick count to see: the counter alone decides.
    timer.slack = Scale(2 * LcUSysTime::eLOW_FREQUENCY, resolution);
    return;
  }
  timer.lowSpan = Scale(LcUSysTime::eLOW_FREQUENCY, micros - resolution);
  timer.flags |= LcUTimer::eLOW_CLOCK;
  timer.slack = Scale(LcUSysTime::eLOW_FREQUENCY, micros + 2 * resolution);
}

bool LcUTime::HasExpired(const LcUTimer& timer) {
  if (timer.flags & LcUTimer::eHIGH_CLOCK) {
    if (LcUSysTime::GetTicks() - timer.highStart >= timer.highSpan) return true;
    return timer.slack != 0 && LcUSysTime::GetLowTicks() - timer.lowStart > timer.slack;
  }
  return LcUSysTime::GetLowTicks() - timer.lowStart >= timer.lowSpan;
}
