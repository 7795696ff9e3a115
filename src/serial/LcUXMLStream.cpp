#include "serial/LcUXMLStream.h"

#include "foundation/LcUError.h"
#include "serial/LcUXMLDOMStream.h"

LcUComponent LcUXMLStream::component;

namespace {
struct Schema {
  int32_t version;
  const char16_t* name;
};
const Schema kSchemas[] = {{50, u"tw-exchange-4.0"},  {52, u"tw-exchange-4.0.1"}, {76, u"tw-exchange-5.0"},
                           {91, u"tw-exchange-6.0"},  {106, u"tw-exchange-7.0"},  {116, u"tw-exchange-8.0"},
                           {414, u"tw-exchange-11.0"}, {441, u"tw-exchange-12.0"}};
const char16_t kOldBase[] = u"http://www.tarnwicket.com/schemas/";
const char16_t kNewBase[] = u"http://download.hollimar.com/us/tarnwicket/schemas/";
// The names on the old base, as the list has always stood: 6.0 twice and
// 7.0 not at all, so 7.0 lies on the new base.
const char16_t* const kOldBaseNames[] = {u"tw-exchange-4.0", u"tw-exchange-4.0.1", u"tw-exchange-5.0",
                                         u"tw-exchange-6.0", u"tw-exchange-6.0"};
}  // namespace

bool LcUXMLStream::GetSchemaName(int32_t version, LcUString& out) {
  out.Clear();
  const Schema* found = nullptr;
  for (const Schema& row : kSchemas)
    if (version >= row.version) found = &row;
  if (!found) return false;
  out.Assign(found->name);
  return true;
}

int32_t LcUXMLStream::GetVersionFromSchemaURL(const char16_t* url) {
  LcUString name;
  if (!GetSchemaNameFromURL(url, name)) return -1;
  for (const Schema& row : kSchemas)
    if (LcUString::Equal(row.name, name.Get())) return row.version;
  return -1;
}

bool LcUXMLStream::GetSchemaNameFromURL(const char16_t* url, LcUString& out) {
  out.Clear();
  if (!url) return false;
  int32_t length = LcUString::Len(url);
  int32_t slash = length - 1;
  while (slash >= 0 && url[slash] != u'/') --slash;
  if (slash < 0) return false;
  LcUString base(url, slash + 1);
  if (!LcUString::Equal(base.Get(), kOldBase) && !LcUString::Equal(base.Get(), kNewBase)) return false;
  int32_t rest = length - slash - 1;
  if (rest <= 4) return false;
  out.Assign(url + slash + 1, rest - 4);
  return true;
}

void LcUXMLStream::GetSchemaURL(const char16_t* name, LcUString& out) {
  out.Clear();
  if (!name || !*name) return;
  bool old = false;
  for (const char16_t* oldName : kOldBaseNames) old = old || LcUString::Equal(oldName, name);
  out.Assign(old ? kOldBase : kNewBase);
  out.Append(name);
  out.Append(u".xsd");
}

void LcUXMLStream::EscapeText(LcUStringA& text) {
  // The ampersand first, so that the entities added later stay as they are.
  text.Replace("&", "&amp;", 0, true);
  text.Replace("\"", "&quot;", 0, true);
  text.Replace("'", "&apos;", 0, true);
  text.Replace("<", "&lt;", 0, true);
  text.Replace(">", "&gt;", 0, true);
  text.Replace("\r\n", "\n", 0, true);
}

void LcUXMLStream::EscapeText(LcUString& text) {
  text.Replace(u"&", u"&amp;", 0, true);
  text.Replace(u"\"", u"&quot;", 0, true);
  text.Replace(u"'", u"&apos;", 0, true);
  text.Replace(u"<", u"&lt;", 0, true);
  text.Replace(u">", u"&gt;", 0, true);
  text.Replace(u"\r\n", u"\n", 0, true);
}

void LcUXMLStream::EscapeToUTF8(const char16_t* text, LcUStringA& out) {
  out.Clear();
  if (!text || !*text) return;
  LcUString escaped(text);
  EscapeText(escaped);
  LcUString::UTF16ToUTF8(escaped.Get(), out, true);
}

void LcUXMLStream::EscapeToUTF8(const char* text, LcUStringA& out) {
  out.Clear();
  if (!text || !*text) return;
  LcUString wide;
  LcUString::MultiByteToWide(text, wide);
  EscapeToUTF8(wide.Get(), out);
}

void LcUXMLStream::SetError(LcUXMLDOMStream& stream, int32_t code, const char16_t* text) {
  if (code == 0) {
    stream.errorCode = 0;
    stream.errorText.Clear();
    LcUError::LogF("XML stream error condition cleared.\n");
    return;
  }
  if (stream.errorCode != 0) return;
  stream.errorCode = code;
  stream.errorText.Assign(text ? text : u"");
  LcUString position;
  stream.GetPositionText(position);
  stream.errorText.Append(u" (");
  stream.errorText.Append(position);
  stream.errorText.Append(u")");
  LcUError::LogF(u"%ls\n", stream.errorText.Get());
}
