#include "filestream/LcUHttpHeaders.h"

#include "environment/LcUCivilTime.h"
#include "foundation/LcUStringA.h"

namespace {
char16_t Lower(char16_t c) { return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c; }

bool StartsNoCase(const char16_t* text, const char16_t* prefix) {
  for (; *prefix; ++text, ++prefix)
    if (Lower(*text) != Lower(*prefix)) return false;
  return true;
}

const char16_t* SkipBlanks(const char16_t* p) {
  while (*p == u' ' || *p == u'\t') ++p;
  return p;
}

// Decimal digits into value; false without one or past 64 bits.
bool ReadNumber(const char16_t*& p, uint64_t& value) {
  const char16_t* start = p;
  value = 0;
  for (; *p >= u'0' && *p <= u'9'; ++p) {
    uint64_t digit = uint64_t(*p - u'0');
    if (value > (UINT64_MAX - digit) / 10) return false;
    value = value * 10 + digit;
  }
  return p != start;
}

bool ReadInt(const char16_t*& p, int32_t digits, int32_t& value) {
  value = 0;
  for (int32_t i = 0; i < digits; ++i, ++p) {
    if (*p < u'0' || *p > u'9') return false;
    value = value * 10 + (*p - u'0');
  }
  return true;
}

bool ReadMonth(const char16_t*& p, int32_t& month) {
  static const char16_t* const kMonths[] = {u"jan", u"feb", u"mar", u"apr", u"may", u"jun",
                                            u"jul", u"aug", u"sep", u"oct", u"nov", u"dec"};
  for (int32_t i = 0; i < 12; ++i)
    if (StartsNoCase(p, kMonths[i])) {
      month = i + 1;
      p += 3;
      return true;
    }
  return false;
}

bool Expect(const char16_t*& p, char16_t c) {
  if (*p != c) return false;
  ++p;
  return true;
}

bool ReadClock(const char16_t*& p, LcUCivilTime& t) {
  return ReadInt(p, 2, t.hour) && Expect(p, u':') && ReadInt(p, 2, t.minute) && Expect(p, u':') &&
         ReadInt(p, 2, t.second);
}

bool InRange(const LcUCivilTime& t) {
  return t.day >= 1 && t.day <= 31 && t.hour <= 23 && t.minute <= 59 && t.second <= 60;
}
}  // namespace

bool LcUHttpHeaders::Find(const char16_t* raw, const char16_t* name, LcUString& value) {
  if (!raw) return false;
  const int32_t nameLength = LcUString::Len(name);
  // The first line is the status line, never a header.
  for (const char16_t* line = raw; *line;) {
    const char16_t* end = line;
    while (*end && *end != u'\r' && *end != u'\n') ++end;
    if (line != raw && StartsNoCase(line, name) && line[nameLength] == u':') {
      value.Assign(line + nameLength + 1, int32_t(end - line - nameLength - 1));
      value.Trim();
      return true;
    }
    line = end;
    while (*line == u'\r' || *line == u'\n') ++line;
  }
  return false;
}

bool LcUHttpHeaders::GetContentLength(const char16_t* raw, uint64_t& size) {
  LcUString value;
  if (!Find(raw, u"Content-Length", value)) return false;
  const char16_t* p = value.Get();
  return ReadNumber(p, size) && *p == 0;
}

bool LcUHttpHeaders::GetContentRangeTotal(const char16_t* raw, uint64_t& total) {
  LcUString value;
  if (!Find(raw, u"Content-Range", value) || !StartsNoCase(value.Get(), u"bytes")) return false;
  const char16_t* p = SkipBlanks(value.Get() + 5);
  uint64_t first = 0, last = 0;
  return ReadNumber(p, first) && Expect(p, u'-') && ReadNumber(p, last) && Expect(p, u'/') && ReadNumber(p, total);
}

bool LcUHttpHeaders::GetFirstRangeTotal(const char16_t* value, uint64_t& total) {
  if (!value || !LcUString::StartsWith(value, u"bytes 0-1/")) return false;
  const char16_t* p = value + 10;
  return ReadNumber(p, total);
}

bool LcUHttpHeaders::ParseDate(const char16_t* text, int64_t& seconds) {
  if (!text) return false;
  const char16_t* p = SkipBlanks(text);
  LcUCivilTime t = {};
  int32_t year = 0;
  const char16_t* comma = p;
  while (*comma && *comma != u',' && *comma != u' ') ++comma;
  bool ok;
  if (*comma == u',') {
    p = SkipBlanks(comma + 1);
    if (p[0] && p[1] && p[2] == u'-') {
      // "Sunday, 06-Nov-94 08:49:37 GMT": two-digit years, 1970 to 2069.
      ok = ReadInt(p, 2, t.day) && Expect(p, u'-') && ReadMonth(p, t.month) && Expect(p, u'-') &&
           ReadInt(p, 2, year) && Expect(p, u' ') && ReadClock(p, t);
      year += year < 70 ? 2000 : 1900;
    } else {
      // "Sun, 06 Nov 1994 08:49:37 GMT".
      ok = ReadInt(p, 2, t.day) && Expect(p, u' ') && ReadMonth(p, t.month) && Expect(p, u' ') &&
           ReadInt(p, 4, year) && Expect(p, u' ') && ReadClock(p, t);
    }
    ok = ok && StartsNoCase(SkipBlanks(p), u"GMT");
  } else {
    // "Sun Nov  6 08:49:37 1994".
    p = SkipBlanks(comma);
    ok = ReadMonth(p, t.month);
    p = SkipBlanks(p);
    if (ok && *p >= u'0' && *p <= u'9' && (p[1] < u'0' || p[1] > u'9')) {
      ok = ReadInt(p, 1, t.day);
    } else {
      ok = ok && ReadInt(p, 2, t.day);
    }
    ok = ok && Expect(p, u' ') && ReadClock(p, t) && Expect(p, u' ') && ReadInt(p, 4, year);
  }
  if (!ok) return false;
  t.year = year;
  if (!InRange(t)) return false;
  seconds = t.ToSeconds();
  return true;
}

void LcUHttpHeaders::RequestTarget(const char16_t* path, LcUString& out) {
  static const char16_t kHex[] = u"0123456789ABCDEF";
  LcUStringA bytes;
  out.Clear();
  if (!path || !LcUString::UTF16ToUTF8(path, bytes, true)) return;
  for (int32_t i = 0; i < bytes.Length(); ++i) {
    uint8_t b = uint8_t(bytes[i]);
    if (b > 0x20 && b < 0x7F) {
      out.Append(char16_t(b));
    } else {
      out.Append(u'%');
      out.Append(kHex[b >> 4]);
      out.Append(kHex[b & 15]);
    }
  }
}
