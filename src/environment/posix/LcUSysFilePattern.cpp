#include "environment/LcUSysFile.h"

namespace {
bool SameUnit(char16_t a, char16_t b) {
  return LcUString::ToLowerUnit(a) == LcUString::ToLowerUnit(b);
}

// One pattern of [pattern, end): the last "*" seen is where a mismatch
// retries, one name unit further on each time.
bool MatchOne(const char16_t* name, const char16_t* pattern, const char16_t* end) {
  const char16_t* star = nullptr;
  const char16_t* resume = nullptr;
  while (*name) {
    if (pattern < end && *pattern == '*') {
      star = ++pattern;
      resume = name;
    } else if (pattern < end && (*pattern == '?' || SameUnit(*pattern, *name))) {
      ++pattern;
      ++name;
    } else if (star) {
      pattern = star;
      name = ++resume;
    } else {
      return false;
    }
  }
  while (pattern < end && *pattern == '*') ++pattern;
  return pattern == end;
}
}  // namespace

// The Windows pattern rules, so that one pattern list means the same on both.
bool LcUSysFile::MatchesPattern(const char16_t* name, const char16_t* pattern) {
  if (!name || !pattern) return false;
  for (const char16_t* p = pattern; *p;) {
    while (*p == ' ') ++p;
    const char16_t* end = p;
    while (*end && *end != ';') ++end;
    bool everything = end - p == 3 && p[0] == '*' && p[1] == '.' && p[2] == '*';
    if (everything || MatchOne(name, p, end)) return true;
    p = *end ? end + 1 : end;
  }
  return false;
}
