#pragma once
#include <cstdint>

#include "foundation/LcUString.h"

// The steps that file look-ups and the section cursor share.
class LcUResourceSearch {
public:
  enum { eUSER_FOLDERS_MASK = 3 };

  // Makes subdir under the user and local directories that mask selects.
  static void EnsureUserFolders(const char16_t* subdir, uint32_t mask);
  // A hit in an inherit directory (7 or 8) copied into the directory it
  // feeds (0 or 1), never overwriting. out, when given, gets the copy's
  // path and is left alone when the copy fails.
  static bool CopyInherited(int index, const char16_t* subdir, const char16_t* name, LcUString* out);
  static bool IsSelected(int index, uint32_t mask);
};
