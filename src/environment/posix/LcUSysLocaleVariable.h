#pragma once

#include "foundation/LcUString.h"

// The locale as the environment names it: which variable speaks for a
// category, and its value as a language tag.
class LcUSysLocaleVariable {
public:
  // The first item of LANGUAGE, else LC_ALL, LC_MESSAGES, LANG; never null.
  static const char* Language();
  // LC_ALL, else the category's variable, else LANG; never null.
  static const char* Category(const char* name);
  // "de_DE.UTF-8@euro" is "de-DE"; "C", "POSIX" and nothing are "en-US".
  // False, with out empty, for a value that names no language.
  static bool ToTag(const char* value, LcUString& out);
};
