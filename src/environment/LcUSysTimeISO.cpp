#include "environment/LcUSysTime.h"

namespace {
constexpr int64_t kSecondsPerDay = 86400;

// Days since 1970-01-01 of a proleptic Gregorian date, and back.
int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
  year -= month <= 2;
  int64_t era = (year >= 0 ? year : year - 399) / 400;
  int64_t yearOfEra = year - era * 400;
  int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

void CivilFromDays(int64_t days, int64_t& year, int64_t& month, int64_t& day) {
  days += 719468;
  int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  int64_t dayOfEra = days - era * 146097;
  int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  int64_t shifted = (5 * dayOfYear + 2) / 153;
  day = dayOfYear - (153 * shifted + 2) / 5 + 1;
  month = shifted < 10 ? shifted + 3 : shifted - 9;
  year = yearOfEra + era * 400 + (month <= 2);
}

// The span the Windows C runtime's UTC conversions cover, both ways.
const int64_t kLatest = DaysFromCivil(3001, 1, 1) * kSecondsPerDay - 1;

// 'd' is a digit, anything else itself.
constexpr char kLayout[] = "dddd-dd-ddTdd:dd:dd";

inline int64_t Field(const char16_t* text, int offset, int width) {
  int64_t value = 0;
  for (int i = 0; i < width; ++i) value = value * 10 + (text[offset + i] - u'0');
  return value;
}

inline void PutDigits(char16_t* out, int offset, int width, int64_t value) {
  for (int i = width - 1; i >= 0; --i, value /= 10) out[offset + i] = char16_t(u'0' + value % 10);
}
}  // namespace

bool LcUSysTime::ParseISOTime(const char16_t* text, int64_t& out) {
  if (!text) return false;
  // Fixed places, so a blank or a sign inside a field can't pass for a number.
  for (int i = 0; i < eISO_TIME_UNITS; ++i) {
    char16_t c = text[i];
    if (kLayout[i] == 'd' ? (c < u'0' || c > u'9') : c != char16_t(kLayout[i])) return false;
  }
  if (text[eISO_TIME_UNITS]) return false;
  int64_t year = Field(text, 0, 4), month = Field(text, 5, 2), day = Field(text, 8, 2);
  int64_t hour = Field(text, 11, 2), minute = Field(text, 14, 2), second = Field(text, 17, 2);
  if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 61) return false;
  // Day 31 of a short month and seconds 60 and 61 carry into what follows.
  int64_t time = (DaysFromCivil(year, month, 1) + day - 1) * kSecondsPerDay + hour * 3600 + minute * 60 + second;
  if (time < 0 || time > kLatest) return false;
  out = time;
  return true;
}

bool LcUSysTime::FormatISOTime(int64_t time, LcUString& out) {
  if (time < 0 || time > kLatest) return false;
  int64_t year, month, day;
  CivilFromDays(time / kSecondsPerDay, year, month, day);
  int64_t second = time % kSecondsPerDay;
  char16_t text[eISO_TIME_UNITS + 1];
  for (int i = 0; i <= eISO_TIME_UNITS; ++i) text[i] = char16_t(kLayout[i]);
  PutDigits(text, 0, 4, year);
  PutDigits(text, 5, 2, month);
  PutDigits(text, 8, 2, day);
  PutDigits(text, 11, 2, second / 3600);
  PutDigits(text, 14, 2, second / 60 % 60);
  PutDigits(text, 17, 2, second % 60);
  out.Assign(text, eISO_TIME_UNITS);
  return true;
}
