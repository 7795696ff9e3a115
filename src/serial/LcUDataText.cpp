#include <charconv>
#include <cstdio>
#include <cstring>

#include "environment/LcURegistry.h"
#include "environment/LcUCivilTime.h"
#include "serial/LcUData.h"
#include "serial/LcUName.h"
#include "serial/LcUStreamText.h"

namespace {
// Scanning as scanf does, on the narrow form of a text: white space before
// each number, the literal characters exactly.
struct Scanner {
  const char* text;
  size_t at = 0;

  void SkipWhite() {
    while (text[at] == ' ' || text[at] == '\t' || text[at] == '\n' || text[at] == '\r' || text[at] == '\v' ||
           text[at] == '\f')
      ++at;
  }
  bool Int(int64_t& value) {
    SkipWhite();
    const char* start = text + at;
    bool negative = *start == '-';
    const char* digits = *start == '-' || *start == '+' ? start + 1 : start;
    uint64_t magnitude = 0;
    std::from_chars_result r = std::from_chars(digits, digits + std::strlen(digits), magnitude, 10);
    if (r.ptr == digits) return false;
    value = negative ? int64_t(0 - magnitude) : int64_t(magnitude);
    at = size_t(r.ptr - text);
    return true;
  }
  bool Real(double& value) {
    SkipWhite();
    const char* start = text + at;
    const char* number = *start == '+' ? start + 1 : start;
    std::from_chars_result r = std::from_chars(number, number + std::strlen(number), value);
    if (r.ptr == number) return false;
    at = size_t(r.ptr - text);
    return true;
  }
  bool Literal(char c) {
    if (c == ' ') {
      SkipWhite();
      return true;
    }
    if (text[at] != c) return false;
    ++at;
    return true;
  }
};

void Narrow(const char16_t* text, LcUStringA& out) {
  LcUString::UTF16ToUTF8(text ? text : u"", out, true);
}

void AppendAscii(LcUString& out, const char* text) {
  LcUString wide;
  LcUString::AsciiToWide(text, wide);
  out.Append(wide);
}

// "%17.19f": nineteen decimals always pass the width, so it never pads.
void AppendFixed(LcUString& out, double value) {
  char text[400];
  std::to_chars_result r = std::to_chars(text, text + sizeof text - 1, value, std::chars_format::fixed, 19);
  *r.ptr = 0;
  AppendAscii(out, text);
}

// Narrow text widened through the process's code page; false for null.
bool AppendNarrow(LcUString& out, const char* text) {
  if (!text) return false;
  LcUString wide;
  LcUString::MultiByteToWide(text, wide);
  out.Append(wide);
  return true;
}

void AppendGeneral(LcUString& out, double value, int digits) {
  char text[48];
  std::to_chars_result r = std::to_chars(text, text + sizeof text - 1, value, std::chars_format::general, digits);
  *r.ptr = 0;
  AppendAscii(out, text);
}

void AppendTime(LcUString& out, int64_t seconds) {
  LcUCivilTime t = LcUCivilTime::FromSeconds(seconds);
  char text[64];
  std::snprintf(text, sizeof text, "%lld/%02d/%02d %02d:%02d:%02d GMT", static_cast<long long>(t.year), t.month, t.day,
                t.hour, t.minute, t.second);
  AppendAscii(out, text);
}

bool ScanTime(Scanner& s, int64_t& seconds) {
  int64_t f[6];
  const char separators[6] = {'/', '/', ' ', ':', ':', 0};
  for (int i = 0; i < 6; ++i) {
    // Fields far out of range would overflow the day count.
    if (!s.Int(f[i]) || f[i] < -100000000 || f[i] > 100000000) return false;
    if (separators[i] && !s.Literal(separators[i])) return false;
  }
  LcUCivilTime t{f[0], int32_t(f[1]), int32_t(f[2]), int32_t(f[3]), int32_t(f[4]), int32_t(f[5])};
  seconds = t.ToSeconds();
  return true;
}

char TagCharacter(int32_t tag) {
  return char('0' + tag);
}
}  // namespace

void LcUData::ToDebugText(LcUString& out) const {
  out.Clear();
  char text[128];
  switch (tag) {
    case eNONE: AppendAscii(out, "<<none>>"); break;
    case eINT32:
      std::snprintf(text, sizeof text, "%d", value.integer);
      AppendAscii(out, text);
      break;
    case eBOOL: AppendAscii(out, value.integer == 1 ? "True" : "False"); break;
    case eWSTRING:
      if (value.wide)
        out.Append(value.wide);
      else
        AppendAscii(out, "<<null>>");
      break;
    case eTIME:
      std::snprintf(text, sizeof text, "%llu", static_cast<unsigned long long>(value.time));
      AppendAscii(out, text);
      break;
    case eNAME:
      if (!value.name) {
        AppendAscii(out, "<<null>>");
        break;
      }
      AppendAscii(out, "Name=");
      if (value.name->GetInternalName()) AppendAscii(out, value.name->GetInternalName());
      AppendAscii(out, " , UserName=");
      if (value.name->GetUserName()) out.Append(value.name->GetUserName());
      break;
    case eSTRING:
      if (!AppendNarrow(out, value.narrow)) AppendAscii(out, "<<null>>");
      break;
    case eVECTOR3:
    case eVECTOR2:
      for (uint32_t i = 0; i < (tag == eVECTOR3 ? 3u : 2u); ++i) {
        if (i) AppendAscii(out, ", ");
        AppendGeneral(out, value.vector[i], 16);
      }
      break;
    default:
      if (IsFloating(tag))
        AppendGeneral(out, value.number, 16);
      else
        AppendAscii(out, "<<notimpl>>");
      break;
  }
}

void LcUData::ToText(LcUString& out) const {
  if (out.IsNull()) out.Clear();
  char text[32];
  switch (tag) {
    case eINT32:
    case eBOOL:
      std::snprintf(text, sizeof text, "%d", value.integer);
      AppendAscii(out, text);
      break;
    case eWSTRING:
      if (value.wide) out.Append(value.wide);
      break;
    case eTIME: AppendTime(out, value.time); break;
    case eNAME: {
      if (!value.name) break;
      const char* internal = value.name->GetInternalName();
      LcUString wideInternal;
      LcUString::UTF8ToUTF16(internal ? internal : "", -1, wideInternal);
      std::snprintf(text, sizeof text, "%d:", wideInternal.Length());
      AppendAscii(out, text);
      out.Append(wideInternal);
      if (value.name->GetUserName()) out.Append(value.name->GetUserName());
      break;
    }
    case eSTRING: AppendNarrow(out, value.narrow); break;
    case eVECTOR3:
    case eVECTOR2:
      for (uint32_t i = 0; i < (tag == eVECTOR3 ? 3u : 2u); ++i) {
        if (i) AppendAscii(out, ";");
        AppendFixed(out, value.vector[i]);
      }
      break;
    default:
      if (IsFloating(tag)) AppendFixed(out, value.number);
      break;
  }
}

bool LcUData::ParseNameText(const char16_t* text, LcUName*& out) {
  out = nullptr;
  if (!text || !*text) return true;
  const char16_t* colon = text;
  while (*colon && *colon != u':') ++colon;
  if (!*colon) return false;
  LcUStringA narrow;
  Narrow(LcUString(text, int32_t(colon - text)).Get(), narrow);
  Scanner s{narrow.Get()};
  int64_t length = 0;
  if (!s.Int(length) || length < 0) return false;
  const char16_t* rest = colon + 1;
  int32_t available = LcUString::Len(rest);
  if (length > available) length = available;
  LcUStringA internal;
  LcUString::UTF16ToUTF8(LcUString(rest, int32_t(length)).Get(), internal, true);
  out = new LcUName(length > 0 ? internal.Get() : nullptr, rest + length);
  return out != nullptr;
}

bool LcUData::FromText(int32_t newTag, const char16_t* text) {
  Clear();
  if (newTag == eNONE) return true;
  if (!text) text = u"";
  if (!*text && newTag != eWSTRING && newTag != eSTRING) return false;
  LcUStringA narrow;
  Narrow(text, narrow);
  Scanner s{narrow.Get()};
  switch (newTag) {
    case eINT32:
    case eBOOL: {
      int64_t v;
      if (!s.Int(v)) return false;
      tag = newTag;
      value.integer = int32_t(v);
      return true;
    }
    case eWSTRING: SetWString(text); return true;
    case eSTRING: {
      LcUStringA multibyte;
      LcUString::WideToMultiByte(text, multibyte);
      SetString(multibyte.Get() ? multibyte.Get() : "");
      return true;
    }
    case eTIME: {
      int64_t seconds;
      if (!ScanTime(s, seconds)) return false;
      SetTime(seconds);
      return true;
    }
    case eNAME: {
      LcUName* name;
      if (!ParseNameText(text, name)) return false;
      SetName(name);
      if (name) name->Release();
      return true;
    }
    case eVECTOR3:
    case eVECTOR2: {
      double v[3] = {0, 0, 0};
      int count = newTag == eVECTOR3 ? 3 : 2;
      for (int i = 0; i < count; ++i)
        if ((i && !s.Literal(';')) || !s.Real(v[i])) return false;
      if (count == 3)
        SetVector3(v[0], v[1], v[2]);
      else
        SetVector2(v[0], v[1]);
      return true;
    }
    default: {
      double v;
      if (!IsFloating(newTag) || !s.Real(v)) return false;
      SetFloat(v, newTag);
      return true;
    }
  }
}

bool LcUData::Parse(const char16_t* text, int32_t newTag, bool wholeString, int32_t* endOut) {
  Clear();
  if (!text) return false;
  LcUStringA narrow;
  Narrow(text, narrow);
  Scanner s{narrow.Get()};
  int32_t length = LcUString::Len(text);
  auto finish = [&](bool read) {
    if (!read || (wholeString && int32_t(s.at) != length)) {
      Clear();
      return false;
    }
    if (endOut) *endOut = int32_t(s.at);
    return true;
  };
  switch (newTag) {
    case eINT32: {
      int64_t v;
      bool read = s.Int(v);
      if (read) SetInt32(int32_t(v));
      return finish(read);
    }
    case eBOOL: {
      int64_t v;
      if (s.Int(v)) {
        tag = eBOOL;
        value.integer = int32_t(v);
        return finish(true);
      }
      LcUString upper(text);
      upper.ToUpper();
      SetBool(LcUString::Equal(upper.Get(), u"YES"));
      s.at = size_t(length);
      return finish(true);
    }
    case eWSTRING:
      SetWString(text);
      s.at = size_t(length);
      return finish(true);
    case eSTRING: {
      LcUStringA multibyte;
      LcUString::WideToMultiByte(text, multibyte);
      SetString(multibyte.Get() ? multibyte.Get() : "");
      s.at = size_t(length);
      return finish(true);
    }
    case eTIME: {
      int64_t seconds;
      bool read = ScanTime(s, seconds);
      if (read) SetTime(seconds);
      return finish(read);
    }
    default: {
      double v;
      bool read = IsFloating(newTag) && s.Real(v);
      if (read) SetFloat(v, newTag);
      return finish(read);
    }
  }
}

void LcUData::ToTaggedText(LcUString& out) const {
  out.Clear();
  char16_t head[3] = {char16_t(TagCharacter(tag)), u':', 0};
  if (tag == eNONE) head[1] = 0;
  out.Append(head);
  ToText(out);
}

bool LcUData::FromTaggedText(const char16_t* text) {
  Clear();
  if (!text || !*text) return false;
  int32_t newTag = int32_t(text[0]) - '0';
  if (newTag < 0 || newTag >= eTAG_COUNT) return false;
  if (newTag == eNONE) return true;
  if (text[1] != u':') return false;
  return FromText(newTag, text + 2);
}

void LcUData::ToRegistryText(LcUString& out) const {
  out.Clear();
  char16_t head[3] = {char16_t(TagCharacter(tag)), u' ', 0};
  if (tag == eNONE || tag == eWSTRING || tag == eSTRING) head[1] = 0;
  out.Append(head);
  ToText(out);
}

bool LcUData::FromRegistryText(const char16_t* text, const LcUData* defaultValue) {
  if (!text || !*text) {
    if (!defaultValue) {
      Clear();
      return false;
    }
    *this = *defaultValue;
    return true;
  }
  Clear();
  int32_t newTag = int32_t(text[0]) - '0';
  if (newTag < 0 || newTag >= eTAG_COUNT) return false;
  return FromText(newTag, text + 1);
}

bool LcUData::ToRegistry(const char16_t* key, const char16_t* name, uint32_t flags) const {
  LcUString text;
  ToRegistryText(text);
  return LcURegistry::RegSetW(key, name, text.Get(), flags);
}

bool LcUData::FromRegistry(const char16_t* key, const char16_t* name, const LcUData* defaultValue, uint32_t flags) {
  LcUString text;
  if (!LcURegistry::RegGetW(key, name, nullptr, text, flags)) text.Free();
  return FromRegistryText(text.Get(), defaultValue);
}
