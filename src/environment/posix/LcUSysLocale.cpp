#include "environment/LcUSysLocale.h"

#include <langinfo.h>
#include <locale.h>

#include <cstring>

#include "environment/posix/LcUSysLanguageTable.h"
#include "environment/posix/LcUSysLocaleVariable.h"

namespace {
void CopyUnits(const char* utf8, char16_t* out, int32_t size) {
  LcUString wide;
  LcUString::UTF8ToUTF16(utf8 ? utf8 : "", -1, wide);
  int32_t n = 0;
  for (const char16_t* p = wide.Get(); p && *p && n < size - 1; ++p) out[n++] = *p;
  out[n] = 0;
}
}  // namespace

uint16_t LcUSysLocale::SystemLanguageId() {
  LcUString tag;
  LcUSysLocaleVariable::ToTag(LcUSysLocaleVariable::Language(), tag);
  const LcUSysLanguageTable::Entry* entry = tag.IsEmpty() ? nullptr : LcUSysLanguageTable::FindTag(tag.Get());
  return entry ? entry->id : 0x0409;
}

bool LcUSysLocale::TagOfId(uint16_t id, LcUString& out) {
  const LcUSysLanguageTable::Entry* entry = LcUSysLanguageTable::FindId(id);
  out = entry ? entry->tag : u"";
  return entry != nullptr;
}

bool LcUSysLocale::AbbreviationOfId(uint16_t id, LcUString& out) {
  const LcUSysLanguageTable::Entry* entry = LcUSysLanguageTable::FindId(id);
  out = entry ? entry->abbreviation : u"";
  return entry != nullptr;
}

uint16_t LcUSysLocale::FindLocale(bool (*visit)(uint16_t id, const char16_t* key), const char16_t* key) {
  for (int32_t i = 0; i < LcUSysLanguageTable::Count(); ++i)
    if (visit(LcUSysLanguageTable::At(i).id, key)) return LcUSysLanguageTable::At(i).id;
  return 0;
}

bool LcUSysLocale::GetUserLocaleName(LcUString& out) {
  return LcUSysLocaleVariable::ToTag(LcUSysLocaleVariable::Category("LC_CTYPE"), out);
}

void LcUSysLocale::ReadNumberFormat(NumberFormat& out) {
  locale_t numeric = newlocale(LC_NUMERIC_MASK, LcUSysLocaleVariable::Category("LC_NUMERIC"), nullptr);
  if (!numeric) numeric = newlocale(LC_NUMERIC_MASK, "C", nullptr);
  const char* decimal = numeric ? nl_langinfo_l(RADIXCHAR, numeric) : ".";
  CopyUnits(decimal, out.decimal, eSEPARATOR_UNITS + 1);
  CopyUnits(numeric ? nl_langinfo_l(THOUSEP, numeric) : "", out.thousand, eSEPARATOR_UNITS + 1);
  // Linux has no list separator: the one that can't be taken for a decimal point.
  CopyUnits(std::strcmp(decimal, ",") == 0 ? ";" : ",", out.list, eSEPARATOR_UNITS + 1);
  out.fractionalDigits = 2;
  if (numeric) freelocale(numeric);
}
