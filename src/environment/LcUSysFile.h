#pragma once
#include "foundation/LcUString.h"

// The layer over the file system: path algebra and the shell folders. Both
// separators are accepted everywhere.
class LcUSysFile {
public:
  enum { eFOLDER_PROFILE = 0, eFOLDER_APPDATA = 1, eFOLDER_LOCAL_APPDATA = 2, eFOLDER_COMMON_APPDATA = 3 };

  static bool IsSeparator(char16_t c) { return c == '\\' || c == '/'; }

  // An empty side gives the other; a separator ("\", or "/" with the flag)
  // goes between unless a already ends in one, and one leading separator
  // of b is dropped. out may alias b.
  static void Join(const char16_t* a, const char16_t* b, LcUString& out, bool forwardSlash = false);

  // 0 user profile, 1 roaming application data, 2 local application data,
  // 3 common application data. Logs and answers false when unavailable.
  static bool GetShellFolder(int kind, LcUString& out);
};
