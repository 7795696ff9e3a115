#pragma once
#include <cstdint>

// The languages Linux knows by Windows' ids: tag, id and the three-letter
// abbreviation. The first entry of each language is its default country.
class LcUSysLanguageTable {
public:
  struct Entry {
    uint16_t id;
    const char16_t* tag;
    const char16_t* abbreviation;
  };
  static int32_t Count();
  static const Entry& At(int32_t index);
  static const Entry* FindId(uint16_t id);
  // Exactly, else the default country of the tag's language; no regard to case.
  static const Entry* FindTag(const char16_t* tag);
};
