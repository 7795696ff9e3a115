#include "environment/LcUSysTime.h"

#include "environment/LcUCivilTime.h"

namespace {
// The span the Windows C runtime's UTC conversions cover, both ways.
const int64_t kLatest = LcUCivilTime{3001, 1, 1, 0, 0, 0}.ToSeconds() - 1;

// 'd' is a digit, anything else itself.
constexpr char kLayout[] = "dddd-dd-ddTdd:dd:dd";

inline int32_t Field(const char16_t* text, int offset, int width) {
  int32_t value = 0;
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
  LcUCivilTime fields{Field(text, 0, 4),  Field(text, 5, 2),  Field(text, 8, 2),
                      Field(text, 11, 2), Field(text, 14, 2), Field(text, 17, 2)};
  if (fields.month < 1 || fields.month > 12 || fields.day < 1 || fields.day > 31 || fields.hour > 23 ||
      fields.minute > 59 || fields.second > 61)
    return false;
  // Day 31 of a short month and seconds 60 and 61 carry into what follows.
  int64_t time = fields.ToSeconds();
  if (time < 0 || time > kLatest) return false;
  out = time;
  return true;
}

bool LcUSysTime::FormatISOTime(int64_t time, LcUString& out) {
  if (time < 0 || time > kLatest) return false;
  LcUCivilTime fields = LcUCivilTime::FromSeconds(time);
  char16_t text[eISO_TIME_UNITS + 1];
  for (int i = 0; i <= eISO_TIME_UNITS; ++i) text[i] = char16_t(kLayout[i]);
  PutDigits(text, 0, 4, fields.year);
  PutDigits(text, 5, 2, fields.month);
  PutDigits(text, 8, 2, fields.day);
  PutDigits(text, 11, 2, fields.hour);
  PutDigits(text, 14, 2, fields.minute);
  PutDigits(text, 17, 2, fields.second);
  out.Assign(text, eISO_TIME_UNITS);
  return true;
}
