#include "environment/LcUCivilTime.h"

namespace {
// Days from 1970-01-01 to a date, and back; months from March so that the
// leap day ends the year.
int64_t DaysFromCivil(int64_t y, int64_t m, int64_t d) {
  y -= m <= 2;
  int64_t era = (y >= 0 ? y : y - 399) / 400;
  int64_t yoe = y - era * 400;
  int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

int64_t FloorDiv(int64_t a, int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}
}  // namespace

LcUCivilTime LcUCivilTime::FromSeconds(int64_t seconds) {
  int64_t days = FloorDiv(seconds, 86400);
  int64_t rest = seconds - days * 86400;
  int64_t z = days + 719468;
  int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  int64_t doe = z - era * 146097;
  int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  int64_t mp = (5 * doy + 2) / 153;
  LcUCivilTime t;
  t.day = int32_t(doy - (153 * mp + 2) / 5 + 1);
  t.month = int32_t(mp < 10 ? mp + 3 : mp - 9);
  t.year = yoe + era * 400 + (t.month <= 2);
  t.hour = int32_t(rest / 3600);
  t.minute = int32_t(rest / 60 % 60);
  t.second = int32_t(rest % 60);
  return t;
}

int64_t LcUCivilTime::ToSeconds() const {
  int64_t months = int64_t(month) - 1;
  int64_t y = year + FloorDiv(months, 12);
  int64_t m = months - FloorDiv(months, 12) * 12 + 1;
  return (DaysFromCivil(y, m, 1) + day - 1) * 86400 + int64_t(hour) * 3600 + int64_t(minute) * 60 + second;
}
