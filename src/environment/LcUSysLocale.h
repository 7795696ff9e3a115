#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// Which languages to use, in order, and the user's number conventions.
// Set up on the start-up thread and read afterwards, without locks.
class LcUSysLocale {
public:
  enum { eLANGUAGE_COUNT = 4, eLOCALE_NAME_UNITS = 85, eSEPARATOR_UNITS = 5 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // The override or the user's language, its default-country form, "en-US"
  // and the machine's installed language; an empty text where no tag could
  // be formed. Built at the first call.
  static const char16_t* GetLanguage(int32_t index);
  // A null tag clears the override.
  static void SetOverrideLanguage(const char16_t* tag);
  // Form 0 or 1: "de-AT" and "de-DE"; form 2: the three-letter abbreviations.
  static bool GetLanguageTags(LcUString& primary, LcUString& neutral, int32_t form);
  static bool GetUserLocaleName(LcUString& out);
  static bool LocaleNameFromId(uint16_t id, LcUString& out);
  // 0 when no installed locale has the tag (or, failing that, the
  // abbreviation); without regard to case.
  static uint16_t GetLanguageIdFromTag(const char16_t* tag);
  static uint16_t GetLanguageIdFromAbbreviation(const char16_t* abbreviation);

  // size counts units with the terminator; false when the text won't fit.
  static bool GetDecimalSeparator(char16_t* out, int32_t size);
  static bool GetThousandSeparator(char16_t* out, int32_t size);
  static bool GetListSeparator(char16_t* out, int32_t size);
  static int32_t GetFractionalDigits();

  // Under the "C" character-type locale, takes the user's locale whole.
  static void SetUserLocale();

  // Digit runs compare as numbers, those with a leading zero as fractions.
  // Returns -1, 0 or 1.
  static int32_t CompareNatural(const char16_t* a, const char16_t* b, bool ignoreCase);

private:
  struct NumberFormat {
    char16_t decimal[eSEPARATOR_UNITS + 1];
    char16_t thousand[eSEPARATOR_UNITS + 1];
    char16_t list[eSEPARATOR_UNITS + 1];
    int32_t fractionalDigits;
  };

  // The platform's part.
  static uint16_t SystemLanguageId();
  // "%ls-%ls" of the id's language and country; false for an unknown id.
  static bool TagOfId(uint16_t id, LcUString& out);
  static bool AbbreviationOfId(uint16_t id, LcUString& out);
  // Calls visit with each installed locale's id until it returns true.
  static uint16_t FindLocale(bool (*visit)(uint16_t id, const char16_t* key), const char16_t* key);
  static void ReadNumberFormat(NumberFormat& out);

  static bool CopySeparator(const char16_t* separator, char16_t* out, int32_t size);
  static const NumberFormat& Numbers();
  static void BuildLanguages();
};
