#include "filestream/LcUURL.h"

#include <initializer_list>

LcUURL::LcUURL(const char16_t* text, bool normalise) {
  Set(text, normalise);
}

bool LcUURL::Set(const char16_t* source, bool normalise) {
  text.Assign(source);
  Reparse();
  if (normalise) Normalise();
  return IsValid();
}

bool LcUURL::SetParts(const LcUURLParts& source) {
  LcUString composed;
  Compose(source, composed);
  text.Swap(composed);
  Reparse();
  return IsValid();
}

void LcUURL::Reparse() {
  valid = Parse(text.Get(), parts) ? 1 : 0;
  requestPath.Clear();
  requestPath.Append(parts.path);
  requestPath.Append(parts.params);
  requestPath.Append(parts.query);
  requestPath.Append(parts.fragment);
}

namespace {
bool IsLetter(char16_t c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// "/..." or a drive such as "c:...".
bool LooksLocal(const LcUString& path) {
  if (path.Length() >= 1 && path[0] == '/') return true;
  return path.Length() >= 2 && IsLetter(path[0]) && path[1] == ':';
}
}  // namespace

bool LcUURL::Normalise() {
  // Most texts hold neither "%" nor "\\"; they are decoded as they stand.
  if (text.FindChar('%') >= 0 || text.FindChar('\\') >= 0) {
    LcUString decoded;
    Decode(text.Get(), true, decoded);
    text.Swap(decoded);
    Reparse();
  }
  if (!IsValid()) return false;
  if (parts.scheme.IsNull() && LooksLocal(parts.path)) {
    parts.scheme.Assign(u"file");
    parts.host.Assign(u"");
    if (parts.path[0] != '/') {
      LcUString rooted(u"/");
      rooted.Append(parts.path);
      parts.path.Swap(rooted);
    }
  }
  if (!parts.scheme.IsNull()) parts.scheme.ToLower();
  if (!parts.host.IsNull()) parts.host.ToLower();
  LcUString composed;
  Compose(parts, composed);
  text.Swap(composed);
  Reparse();
  return IsValid();
}

bool LcUURL::IsFileScheme() const {
  return !parts.scheme.IsNull() && LcUString::CompareNoCase(parts.scheme.Get(), u"file") == 0;
}

void LcUURL::GetLocalPath(LcUString& out) const {
  const LcUString& path = parts.path;
  int32_t skip = 0;
  if (!parts.scheme.IsNull() && path.Length() > 2 && path[0] == '/' && IsLetter(path[1]) && path[2] == ':') skip = 1;
  out.Clear();
  if (path.Length() > skip) out.Append(path.Get() + skip, path.Length() - skip);
  if (IsFileScheme()) return;
  out.Append(parts.params);
  out.Append(parts.query);
  out.Append(parts.fragment);
}

void LcUURL::GetPlainText(LcUString& out) const {
  if (!IsFileScheme()) {
    out = text;
    return;
  }
  LcUString local;
  GetLocalPath(local);
  Encode(local.Get(), out);
}

bool LcUURL::Equal(const char16_t* a, const char16_t* b, bool ignoreCase) {
  LcUURL first(a, true);
  LcUURL second(b, true);
  if (ignoreCase) {
    for (LcUURL* url : {&first, &second}) {
      LcUURLParts lowered = url->parts;
      if (!lowered.path.IsNull()) lowered.path.ToLower();
      url->SetParts(lowered);
    }
  }
  return first.text == second.text;
}
