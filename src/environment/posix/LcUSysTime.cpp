#include "environment/LcUSysTime.h"

#include <locale.h>

#include <ctime>

#include "environment/posix/LcUSysLocaleVariable.h"

namespace {
// Ten megahertz, as Windows' counter commonly runs: fine enough to beat the
// tick count, coarse enough that spans of days stay far inside 64 bits.
constexpr int64_t kCounterFrequency = 10000000;
}  // namespace

int64_t LcUSysTime::QueryFrequency() {
  timespec resolution{};
  return clock_getres(CLOCK_MONOTONIC, &resolution) == 0 ? kCounterFrequency : 0;
}

int64_t LcUSysTime::QueryLowResolution() {
  // The tick count is whole milliseconds of the monotonic clock.
  return 1000;
}

uint64_t LcUSysTime::ReadCounter() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return uint64_t(now.tv_sec) * kCounterFrequency + uint64_t(now.tv_nsec) / (1000000000 / kCounterFrequency);
}

uint64_t LcUSysTime::ReadLowTicks() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return uint64_t(now.tv_sec) * 1000 + uint64_t(now.tv_nsec) / 1000000;
}

int64_t LcUSysTime::ReadTime() {
  return int64_t(std::time(nullptr));
}

bool LcUSysTime::FormatPart(int64_t time, bool date, char16_t* out, int32_t size, bool local) {
  time_t seconds = time_t(time);
  tm parts{};
  if (!(local ? localtime_r(&seconds, &parts) : gmtime_r(&seconds, &parts))) return false;
  locale_t user = newlocale(LC_TIME_MASK, LcUSysLocaleVariable::Category("LC_TIME"), nullptr);
  if (!user) user = newlocale(LC_TIME_MASK, "C", nullptr);
  if (!user) return false;
  char text[256];
  size_t length = strftime_l(text, sizeof(text), date ? "%x" : "%X", &parts, user);
  freelocale(user);
  if (!length) return false;
  LcUString wide;
  if (!LcUString::UTF8ToUTF16(text, int32_t(length), wide) || !out || wide.Length() >= size) return false;
  for (int32_t i = 0; i <= wide.Length(); ++i) out[i] = wide.Get()[i];
  return true;
}
