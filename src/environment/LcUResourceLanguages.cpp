#include "environment/LcUResourceLanguages.h"

#include "foundation/LcUString.h"

int32_t LcUResourceLanguages::Get(const char16_t* (&tags)[eCOUNT]) {
  // The user's and the system's languages, built in until the locale
  // component provides them.
  static const char16_t* const kOrder[eCOUNT] = {u"en-US", u"en", u"en-US", u"en"};
  int32_t count = 0;
  for (const char16_t* tag : kOrder) {
    bool seen = false;
    for (int32_t i = 0; i < count; ++i) seen = seen || LcUString::Equal(tags[i], tag);
    if (!seen) tags[count++] = tag;
  }
  return count;
}
