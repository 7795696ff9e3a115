#include <climits>

#include "filestream/LcUURL.h"

namespace {
bool IsSchemeUnit(char16_t c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' ||
         c == '.';
}

int32_t FindIn(const char16_t* text, int32_t from, int32_t to, char16_t unit) {
  for (int32_t i = from; i < to; ++i)
    if (text[i] == unit) return i;
  return -1;
}

// Leading decimal digits with an optional sign, as the C library reads
// them; too large a value stops at the type's limit.
int32_t ReadPort(const char16_t* text, int32_t from, int32_t to) {
  bool negative = false;
  if (from < to && (text[from] == '+' || text[from] == '-')) negative = text[from++] == '-';
  int64_t value = 0;
  for (; from < to && text[from] >= '0' && text[from] <= '9'; ++from) {
    value = value * 10 + (text[from] - '0');
    if (value > INT_MAX) value = int64_t(INT_MAX) + 1;
  }
  if (negative) value = -value;
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return int32_t(value);
}

struct SchemePort {
  const char16_t* scheme;
  int32_t port;
};
const SchemePort kDefaultPorts[] = {{u"ftp", 21}, {u"ssh", 22}, {u"telnet", 23}, {u"http", 80}, {u"https", 443}};
}  // namespace

int32_t LcUURL::GetDefaultPort(const char16_t* scheme) {
  if (!scheme) return 0;
  for (const SchemePort& entry : kDefaultPorts)
    if (LcUString::CompareNoCase(scheme, entry.scheme) == 0) return entry.port;
  return 0;
}

bool LcUURL::Parse(const char16_t* text, LcUURLParts& parts) {
  parts.Clear();
  if (!text) return false;
  int32_t end = 0;
  while (end < eMAX_LENGTH && text[end]) ++end;
  if (end >= eMAX_LENGTH) return false;

  int32_t hash = FindIn(text, 0, end, '#');
  if (hash >= 0) {
    parts.fragment.Assign(text + hash, end - hash);
    end = hash;
  }

  int32_t colon = FindIn(text, 0, end, ':');
  if (colon == 0) return false;
  int32_t rest = 0;
  if (colon > 0 && end - colon >= 3 && text[colon + 1] == '/' && text[colon + 2] == '/') {
    bool scheme = true;
    for (int32_t i = 0; i < colon && scheme; ++i) scheme = IsSchemeUnit(text[i]);
    if (scheme) {
      parts.scheme.Assign(text, colon);
      rest = colon + 1;
    }
  }

  if (end - rest >= 3 && text[rest] == '/' && text[rest + 1] == '/') {
    int32_t authority = rest + 2;
    int32_t slash = FindIn(text, authority, end, '/');
    int32_t authorityEnd = slash < 0 ? end : slash;
    int32_t hostStart = authority;
    int32_t at = FindIn(text, authority, authorityEnd, '@');
    if (at >= 0) {
      int32_t split = FindIn(text, authority, at, ':');
      if (split >= 0) {
        parts.user.Assign(text + authority, split - authority);
        parts.password.Assign(text + split + 1, at - split - 1);
      } else {
        parts.user.Assign(text + authority, at - authority);
      }
      hostStart = at + 1;
    }
    int32_t hostEnd = authorityEnd;
    int32_t portColon = FindIn(text, hostStart, authorityEnd, ':');
    if (portColon >= 0 && portColon + 1 < authorityEnd) {
      parts.port = ReadPort(text, portColon + 1, authorityEnd);
      hostEnd = portColon;
    }
    if (parts.port <= 0) parts.port = GetDefaultPort(parts.scheme.Get());
    parts.host.Assign(text + hostStart, hostEnd - hostStart);
    if (slash < 0) return true;
    rest = slash;
  }

  int32_t question = FindIn(text, rest, end, '?');
  if (question >= 0) {
    parts.query.Assign(text + question, end - question);
    end = question;
  }
  int32_t semicolon = FindIn(text, rest, end, ';');
  if (semicolon >= 0) {
    parts.params.Assign(text + semicolon, end - semicolon);
    end = semicolon;
  }
  parts.path.Assign(text + rest, end - rest);
  return true;
}

void LcUURL::Compose(const LcUURLParts& parts, LcUString& out) {
  out.Clear();
  if (!parts.scheme.IsNull()) {
    out.Append(parts.scheme);
    out.Append(u':');
  }
  if (!parts.host.IsNull() || !parts.user.IsNull() || !parts.password.IsNull()) out.Append(u"//", 2);
  out.Append(parts.user);
  if (!parts.password.IsNull()) {
    out.Append(u':');
    out.Append(parts.password);
    out.Append(u'@');
  } else if (!parts.user.IsNull()) {
    out.Append(u'@');
  }
  out.Append(parts.host);
  if (parts.port != 0 && !parts.scheme.IsNull() && parts.port != GetDefaultPort(parts.scheme.Get())) {
    char16_t digits[12];
    int32_t at = 12;
    uint32_t value = parts.port < 0 ? 0u - uint32_t(parts.port) : uint32_t(parts.port);
    do {
      digits[--at] = char16_t('0' + value % 10);
      value /= 10;
    } while (value);
    if (parts.port < 0) digits[--at] = '-';
    out.Append(u':');
    out.Append(digits + at, 12 - at);
  }
  out.Append(parts.path);
  out.Append(parts.params);
  out.Append(parts.query);
  out.Append(parts.fragment);
}
