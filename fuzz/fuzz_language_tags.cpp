#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "environment/LcUSysLocale.h"
#include "environment/posix/LcUSysLocaleVariable.h"

// A locale variable's value becomes a tag or nothing; any tag may be looked
// up or set as the override, and an id found for a tag names that tag.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string value(reinterpret_cast<const char*>(data), size);
  value = value.substr(0, value.find('\0'));
  LcUString tag;
  if (LcUSysLocaleVariable::ToTag(value.c_str(), tag) && tag.IsEmpty()) std::abort();
  LcUString wide;
  for (char c : value) wide.Append(char16_t(static_cast<unsigned char>(c)));
  const char16_t* text = wide.Get() ? wide.Get() : u"";
  if (uint16_t id = LcUSysLocale::GetLanguageIdFromTag(text)) {
    LcUString name;
    if (!LcUSysLocale::LocaleNameFromId(id, name) || LcUSysLocale::GetLanguageIdFromTag(name.Get()) == 0)
      std::abort();
  }
  LcUSysLocale::SetOverrideLanguage(text);
  for (int32_t i = 0; i < LcUSysLocale::eLANGUAGE_COUNT; ++i)
    if (!LcUSysLocale::GetLanguage(i)) std::abort();
  return 0;
}
