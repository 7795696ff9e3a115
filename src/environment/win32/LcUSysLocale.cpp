#include "environment/LcUSysLocale.h"

#include <windows.h>

#include <cwchar>
#include <initializer_list>

namespace {
LCID LcidOf(uint16_t id) {
  return MAKELCID(id, SORT_DEFAULT);
}

bool Info(uint16_t id, LCTYPE type, wchar_t* out, int size) {
  return GetLocaleInfoW(LcidOf(id), type, out, size) > 0;
}

// EnumSystemLocalesW passes no context: the search in progress lives here,
// which is safe as locales are looked up on the start-up thread.
bool (*searchVisit)(uint16_t, const char16_t*) = nullptr;
const char16_t* searchKey = nullptr;
uint16_t searchFound = 0;

BOOL CALLBACK VisitLocale(LPWSTR text) {
  uint16_t id = LANGIDFROMLCID(LCID(std::wcstoul(text, nullptr, 16)));
  if (!searchVisit(id, searchKey)) return TRUE;
  searchFound = id;
  return FALSE;
}

BOOL CALLBACK CountLanguage(LPWSTR, LONG_PTR count) {
  ++*reinterpret_cast<int32_t*>(count);
  return TRUE;
}
}  // namespace

uint16_t LcUSysLocale::SystemLanguageId() {
  int32_t uiLanguageCount = 0;
  EnumUILanguagesW(&CountLanguage, MUI_LANGUAGE_ID, reinterpret_cast<LONG_PTR>(&uiLanguageCount));
  return uiLanguageCount > 1 ? GetUserDefaultUILanguage() : LANGIDFROMLCID(GetUserDefaultLCID());
}

bool LcUSysLocale::TagOfId(uint16_t id, LcUString& out) {
  wchar_t language[10], country[10];
  out.Clear();
  if (!Info(id, LOCALE_SISO639LANGNAME, language, 10) || !Info(id, LOCALE_SISO3166CTRYNAME, country, 10))
    return false;
  out.Format(u"%ls-%ls", reinterpret_cast<const char16_t*>(language), reinterpret_cast<const char16_t*>(country));
  return true;
}

bool LcUSysLocale::AbbreviationOfId(uint16_t id, LcUString& out) {
  wchar_t abbreviation[10];
  out.Clear();
  if (!Info(id, LOCALE_SABBREVLANGNAME, abbreviation, 10)) return false;
  out = reinterpret_cast<const char16_t*>(abbreviation);
  return true;
}

uint16_t LcUSysLocale::FindLocale(bool (*visit)(uint16_t id, const char16_t* key), const char16_t* key) {
  searchVisit = visit;
  searchKey = key;
  searchFound = 0;
  EnumSystemLocalesW(&VisitLocale, LCID_INSTALLED);
  return searchFound;
}

bool LcUSysLocale::GetUserLocaleName(LcUString& out) {
  wchar_t name[eLOCALE_NAME_UNITS];
  out.Clear();
  if (!GetUserDefaultLocaleName(name, eLOCALE_NAME_UNITS)) return false;
  out = reinterpret_cast<const char16_t*>(name);
  return true;
}

void LcUSysLocale::ReadNumberFormat(NumberFormat& out) {
  struct Field {
    LCTYPE type;
    char16_t* target;
    const char16_t* fallback;
  };
  for (const Field& field : {Field{LOCALE_SDECIMAL, out.decimal, u"."}, Field{LOCALE_STHOUSAND, out.thousand, u","},
                             Field{LOCALE_SLIST, out.list, u","}}) {
    if (!GetLocaleInfoW(LOCALE_USER_DEFAULT, field.type, reinterpret_cast<wchar_t*>(field.target),
                        eSEPARATOR_UNITS + 1))
      CopySeparator(field.fallback, field.target, eSEPARATOR_UNITS + 1);
  }
  DWORD digits = 2;
  if (!GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IDIGITS | LOCALE_RETURN_NUMBER, reinterpret_cast<wchar_t*>(&digits),
                      sizeof(digits) / sizeof(wchar_t)))
    digits = 2;
  out.fractionalDigits = int32_t(digits);
}
