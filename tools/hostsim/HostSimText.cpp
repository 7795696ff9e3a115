#include "HostSimText.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "foundation/LcUString.h"
#include "foundation/LcUUtf8.h"

bool HostSimText::FromUtf8(const std::string& text, std::u16string& wide) {
  wide.assign(text.size(), u'\0');
  bool valid = true;
  int64_t n = LcUUtf8::DecodeToUTF16(text.data(), int64_t(text.size()), &wide[0], valid);
  wide.resize(size_t(n));
  return valid && text.find('\0') == std::string::npos;
}

namespace {
bool IsHigh(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsLow(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void AppendUtf8(std::string& out, uint32_t code) {
  if (code < 0x80) {
    out += char(code);
  } else if (code < 0x800) {
    out += char(0xC0 | (code >> 6));
    out += char(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += char(0xE0 | (code >> 12));
    out += char(0x80 | ((code >> 6) & 0x3F));
    out += char(0x80 | (code & 0x3F));
  } else {
    out += char(0xF0 | (code >> 18));
    out += char(0x80 | ((code >> 12) & 0x3F));
    out += char(0x80 | ((code >> 6) & 0x3F));
    out += char(0x80 | (code & 0x3F));
  }
}

// Walks the text by code point; an unpaired surrogate arrives as itself
// with paired false.
template <typename Visit>
void EachCodePoint(const char16_t* text, size_t length, Visit visit) {
  for (size_t i = 0; i < length; ++i) {
    char16_t unit = text[i];
    if (IsHigh(unit) && i + 1 < length && IsLow(text[i + 1])) {
      visit(0x10000 + ((uint32_t(unit) - 0xD800) << 10) + (uint32_t(text[i + 1]) - 0xDC00), true);
      ++i;
    } else {
      visit(uint32_t(unit), !IsHigh(unit) && !IsLow(unit));
    }
  }
}
}  // namespace

std::string HostSimText::ToUtf8(const std::u16string& text) {
  std::string out;
  EachCodePoint(text.data(), text.size(), [&](uint32_t code, bool whole) { AppendUtf8(out, whole ? code : 0xFFFD); });
  return out;
}

std::string HostSimText::Quote(const char16_t* text, size_t length) {
  std::string out = "\"";
  EachCodePoint(text, length, [&](uint32_t code, bool whole) {
    char escape[12];
    if (!whole) {
      std::snprintf(escape, sizeof(escape), "\\u%04X", unsigned(code));
      out += escape;
    } else if (code == '"') {
      out += "\\\"";
    } else if (code == '\n') {
      out += "\\n";
    } else if (code == '\r') {
      out += "\\r";
    } else if (code == '\t') {
      out += "\\t";
    } else if (code < 0x20 || code == 0x7F) {
      std::snprintf(escape, sizeof(escape), "\\x%02X", unsigned(code));
      out += escape;
    } else {
      AppendUtf8(out, code);
    }
  });
  return out + "\"";
}

std::string HostSimText::Number(double value, int digits) {
  // The C libraries disagree on how they spell these.
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  char text[40];
  std::snprintf(text, sizeof(text), "%.*g", digits, value);
  return text;
}

std::string HostSimText::Hex(HRESULT value) {
  char text[12];
  std::snprintf(text, sizeof(text), "0x%08X", unsigned(value));
  return text;
}

bool HostSimText::EqualNoCase(const std::u16string& a, const std::u16string& b) {
  return a.size() == b.size() && LcUString::CompareNoCase(a.c_str(), b.c_str()) == 0;
}

bool HostSimText::ReadGuid(const std::string& text, GUID& guid) {
  // {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}
  static const char kShape[] = "{........-....-....-....-............}";
  if (text.size() != sizeof(kShape) - 1) return false;
  std::string hex;
  for (size_t i = 0; i < text.size(); ++i) {
    if (kShape[i] != '.') {
      if (text[i] != kShape[i]) return false;
    } else if (!std::isxdigit(static_cast<unsigned char>(text[i]))) {
      return false;
    } else {
      hex += text[i];
    }
  }
  auto field = [&](size_t at, size_t digits) { return std::strtoul(hex.substr(at, digits).c_str(), nullptr, 16); };
  guid.Data1 = uint32_t(field(0, 8));
  guid.Data2 = uint16_t(field(8, 4));
  guid.Data3 = uint16_t(field(12, 4));
  for (size_t i = 0; i < 8; ++i) guid.Data4[i] = uint8_t(field(16 + 2 * i, 2));
  return true;
}
