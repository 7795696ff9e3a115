#include <windows.h>
#include <shlwapi.h>

#include "environment/LcUSysFile.h"

bool LcUSysFile::MatchesPattern(const char16_t* name, const char16_t* pattern) {
  if (!name || !pattern) return false;
  return PathMatchSpecW(reinterpret_cast<const wchar_t*>(name), reinterpret_cast<const wchar_t*>(pattern)) != FALSE;
}
