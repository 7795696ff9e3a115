#include "environment/LcUSysTime.h"

#include "foundation/LcUError.h"

LcUComponent LcUSysTime::component;

namespace {
bool highResolutionEnabled = false;
int64_t frequency = 0;
int64_t lowResolutionMicroseconds = LcUSysTime::eDEFAULT_LOW_RESOLUTION;
}  // namespace

void LcUSysTime::Configure(bool allowed, int64_t counterFrequency, int64_t lowResolution) {
  highResolutionEnabled = counterFrequency > 0 && allowed;
  frequency = counterFrequency > 0 ? counterFrequency : 0;
  if (counterFrequency <= 0) LcUError::PostF(5, &component, "No high-performance counter");
  lowResolutionMicroseconds = lowResolution > 0 ? lowResolution : int64_t(eDEFAULT_LOW_RESOLUTION);
  LcUError::LogF("LcUSysTime: LP resolution %lld\n", static_cast<long long>(lowResolutionMicroseconds));
  if (!highResolutionEnabled) return;
  // In whole microseconds: any counter above a megahertz gives 0 and stays.
  int64_t highResolution = 1000000 / frequency;
  LcUError::LogF("LcUSysTime: HP resolution %lld\n", static_cast<long long>(highResolution));
  if (highResolution >= lowResolutionMicroseconds) {
    highResolutionEnabled = false;
    LcUError::LogF("LcUSysTime: Disabling HP counter as resolution is worse than LP\n");
  }
}

uint64_t LcUSysTime::GetTicks() {
  return highResolutionEnabled ? ReadCounter() : 0;
}

int64_t LcUSysTime::GetFrequency() {
  return highResolutionEnabled ? frequency : 0;
}

uint64_t LcUSysTime::GetLowTicks() {
  return ReadLowTicks();
}

int64_t LcUSysTime::GetResolutionMicroseconds() {
  return lowResolutionMicroseconds;
}

bool LcUSysTime::IsHighResolution() {
  return highResolutionEnabled;
}

double LcUSysTime::GetSeconds() {
  return TicksToSeconds(ReadLowTicks());
}

double LcUSysTime::TicksToSeconds(uint64_t lowTicks) {
  return double(lowTicks) / eLOW_FREQUENCY;
}

int64_t LcUSysTime::GetTime() {
  return ReadTime();
}

int64_t LcUSysTime::FileTimeToTime(uint64_t fileTime) {
  return int64_t(fileTime / 10000000) - 11644473600LL;
}

bool LcUSysTime::FormatDate(int64_t time, char16_t* out, int32_t size, bool local) {
  return FormatPart(time, true, out, size, local);
}

bool LcUSysTime::FormatTimeOfDay(int64_t time, char16_t* out, int32_t size, bool local) {
  return FormatPart(time, false, out, size, local);
}

bool LcUSysTime::FormatDateTime(int64_t time, char16_t* out, int32_t size, bool local) {
  enum { ePART_UNITS = 100 };
  char16_t date[ePART_UNITS], clock[ePART_UNITS];
  bool hasDate = FormatPart(time, true, date, ePART_UNITS, local);
  bool hasClock = FormatPart(time, false, clock, ePART_UNITS, local);
  if (!hasDate && !hasClock) return false;
  LcUString joined(hasDate ? date : u"");
  if (hasDate && hasClock) joined.Append(u' ');
  if (hasClock) joined.Append(clock);
  if (!out || joined.Length() >= size) return false;
  for (int32_t i = 0; i <= joined.Length(); ++i) out[i] = joined.Get()[i];
  return true;
}
