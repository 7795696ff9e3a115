#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "serial/LcUData.h"
#include "serial/LcUName.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLEnumeration.h"
#include "serial/LcUXMLStream.h"

namespace {
// From this version on a name is its own element rather than a text.
constexpr int32_t kNameElements = 91;

const LcUXMLEnumeration::Pair kTypes[] = {
    {LcUData::eFLOAT, "float"},  {LcUData::eINT32, "int32"},   {LcUData::eBOOL, "bool"},
    {LcUData::eWSTRING, "wstring"}, {LcUData::eTIME, "time"},  {LcUData::eLINEAR, "linear"},
    {LcUData::eANGLE, "angle"},  {LcUData::eNAME, "name"},     {LcUData::eSTRING, "string"},
    {LcUData::eAREA, "area"},    {LcUData::eVOLUME, "volume"}};

void Ascii(const char* text, LcUString& out) {
  LcUString::AsciiToWide(text, out);
}

// The leading ASCII of a text, where a number stands, on the stack.
struct Digits {
  char text[72];
  explicit Digits(const LcUString& wide) {
    const char16_t* w = wide.Get() ? wide.Get() : u"";
    while (*w == u' ' || *w == u'\t' || *w == u'\n' || *w == u'\r') ++w;
    size_t n = 0;
    for (; n + 1 < sizeof text && w[n] && w[n] < 0x80; ++n) text[n] = char(w[n]);
    text[n] = 0;
  }
};

// wcstod and wcstol in the "C" locale: what leads the text, else 0.
double Real(const LcUString& text) {
  Digits d(text);
  const char* s = d.text[0] == '+' ? d.text + 1 : d.text;
  double value = 0;
  std::from_chars(s, s + std::strlen(s), value);
  return value;
}

int64_t Integer(const LcUString& text) {
  return std::strtoll(Digits(text).text, nullptr, 10);
}
}  // namespace

bool LcUData::SerialiseXML(LcUXMLDOMStream& stream, LcUNameTable* table) {
  bool writing = stream.IsWriting();
  LcUXMLEnumeration types(kTypes, int32_t(sizeof kTypes / sizeof kTypes[0]));
  bool ok = stream.BeginElement("data", 0);
  int32_t kind = tag;
  // An empty value carries no type word.
  if (!writing || kind != eNONE) ok = types.Serialise(stream, "type", kind, eNONE) && ok;
  if (!writing) Clear();
  bool names = stream.version >= kNameElements;

  if (writing) {
    LcUString& text = stream.scratchText;
    text.Clear();
    // Null strings and null names write no text at all.
    bool content = !(tag == eNONE || (tag == eNAME && (names || !value.name)) || (tag == eSTRING && !value.narrow));
    char number[400];
    switch (tag) {
      case eINT32:
        std::snprintf(number, sizeof number, "%d", value.integer);
        Ascii(number, text);
        break;
      case eBOOL: Ascii(value.integer == 1 ? "true" : "false", text); break;
      case eWSTRING: text.Assign(value.wide ? value.wide : u""); break;
      case eTIME:
        std::snprintf(number, sizeof number, "%lld", static_cast<long long>(value.time));
        Ascii(number, text);
        break;
      case eNAME:
        if (names) {
          LcUName* name = value.name;
          ok = LcUXMLStream::SerialiseName(stream, name, 0, table) && ok;
          break;
        }
        if (value.name) {
          // "user:internal"
          LcUString internal;
          LcUString::UTF8ToUTF16(value.name->GetInternalName() ? value.name->GetInternalName() : "", -1, internal);
          text.Assign(value.name->GetUserName() ? value.name->GetUserName() : u"");
          text.Append(u":");
          text.Append(internal);
        }
        break;
      case eSTRING:
        if (value.narrow) LcUString::MultiByteToWide(value.narrow, text);
        break;
      default:
        if (IsFloating(tag)) {
          // "%f": six decimals, as the format has always stood.
          std::to_chars_result r = std::to_chars(number, number + sizeof number - 1, value.number, std::chars_format::fixed, 6);
          *r.ptr = 0;
          Ascii(number, text);
        }
        break;
    }
    if (content) ok = stream.ElementText(text) && ok;
    stream.EndElement("data");
    return ok;
  }

  if (kind == eNAME && names) {
    LcUName* name = nullptr;
    ok = LcUXMLStream::SerialiseName(stream, name, 0, table) && ok;
    SetName(name);
    if (name) name->Release();
    stream.EndElement("data");
    return ok;
  }
  LcUString& text = stream.scratchText;
  bool present = stream.ElementText(text) && !text.IsEmpty();
  switch (kind) {
    case eNONE: break;
    case eINT32: SetInt32(present ? int32_t(Integer(text)) : 0); break;
    case eBOOL: SetBool(present && LcUString::Equal(text.Get(), u"true")); break;
    case eWSTRING: SetWString(present ? text.Get() : u""); break;
    case eTIME: SetTime(present ? Integer(text) : 0); break;
    case eNAME: {
      if (!present) {
        SetName(nullptr);
        break;
      }
      // "user:internal"; without a colon, or with one at the end, no internal name.
      int32_t colon = text.FindChar(u':');
      LcUString user(colon < 0 ? text.Get() : LcUString(text.Get(), colon).Get());
      LcUStringA internal;
      if (colon >= 0 && colon + 1 < text.Length()) LcUString::UTF16ToUTF8(text.Get() + colon + 1, internal, true);
      LcUName* name = LcUNameTable::MakeName(user.Get(), internal.IsEmpty() ? nullptr : internal.Get(), table);
      SetName(name);
      if (name && !table) name->Release();
      break;
    }
    case eSTRING: {
      LcUStringA multibyte;
      if (present) LcUString::WideToMultiByte(text.Get(), multibyte);
      SetString(multibyte.Get() ? multibyte.Get() : "");
      break;
    }
    default: SetFloat(present ? Real(text) : 0.0, kind); break;
  }
  stream.EndElement("data");
  return ok;
}
