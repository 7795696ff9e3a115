#include "environment/posix/LcUSysLocaleVariable.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {
const char* Variable(const char* name) {
  const char* value = std::getenv(name);
  return value && *value ? value : nullptr;
}

bool IsAsciiLetter(char c) {
  return (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
}

bool IsAsciiAlnum(char c) {
  return IsAsciiLetter(c) || (c >= '0' && c <= '9');
}
}  // namespace

const char* LcUSysLocaleVariable::Language() {
  // LANGUAGE is a list, "de_DE:en"; only its head matters here.
  static thread_local char head[64];
  if (const char* list = Variable("LANGUAGE")) {
    size_t length = std::strcspn(list, ":");
    if (length && length < sizeof(head)) {
      std::memcpy(head, list, length);
      head[length] = 0;
      return head;
    }
  }
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const char* value = Variable(name)) return value;
  return "";
}

const char* LcUSysLocaleVariable::Category(const char* name) {
  for (const char* variable : {"LC_ALL", name, "LANG"})
    if (const char* value = Variable(variable)) return value;
  return "";
}

bool LcUSysLocaleVariable::ToTag(const char* value, LcUString& out) {
  out.Clear();
  size_t length = std::strcspn(value, ".@");
  if (length == 0 || (length == 1 && value[0] == 'C') || (length == 5 && !std::strncmp(value, "POSIX", 5))) {
    out = u"en-US";
    return true;
  }
  // language[_territory], as ll_CC or lll_CC; the territory up to 9 units.
  size_t language = 0;
  while (language < length && IsAsciiLetter(value[language])) ++language;
  if (language < 2 || language > 3) return false;
  size_t territory = 0;
  if (language < length) {
    if (value[language] != '_') return false;
    while (language + 1 + territory < length && IsAsciiAlnum(value[language + 1 + territory])) ++territory;
    if (territory == 0 || territory > 9 || language + 1 + territory != length) return false;
  }
  char16_t tag[16];
  size_t n = 0;
  for (size_t i = 0; i < language; ++i) tag[n++] = char16_t(value[i] | 0x20);
  if (territory) tag[n++] = u'-';
  for (size_t i = 0; i < territory; ++i) {
    char c = value[language + 1 + i];
    tag[n++] = char16_t(IsAsciiLetter(c) ? c & ~0x20 : c);
  }
  tag[n] = 0;
  out = tag;
  return true;
}
