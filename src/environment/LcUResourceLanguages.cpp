#include "environment/LcUResourceLanguages.h"

#include "environment/LcUSysLocale.h"
#include "foundation/LcUString.h"

int32_t LcUResourceLanguages::Get(const char16_t* (&tags)[eCOUNT]) {
  int32_t count = 0;
  for (int32_t index = 0; index < LcUSysLocale::eLANGUAGE_COUNT; ++index) {
    const char16_t* tag = LcUSysLocale::GetLanguage(index);
    bool seen = !*tag;
    for (int32_t i = 0; i < count; ++i) seen = seen || LcUString::Equal(tags[i], tag);
    if (!seen) tags[count++] = tag;
  }
  return count;
}
