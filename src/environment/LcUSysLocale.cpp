#include "environment/LcUSysLocale.h"

#include <clocale>

#include "environment/LcURegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUSysLocale::component;

namespace {
// "xxxxxxxxx-xxxxxxxxx" at most, each half 9 units.
constexpr int32_t kTagUnits = 20;

uint16_t overrideLanguage = 0;
bool languagesBuilt = false;
char16_t languages[LcUSysLocale::eLANGUAGE_COUNT][kTagUnits];
bool numbersRead = false;

uint16_t DefaultCountry(uint16_t id) {
  return uint16_t((id & 1023) | 1024);
}

// Fixed storage: the list outlives no allocator and needs no release.
void Store(char16_t (&slot)[kTagUnits], const char16_t* tag) {
  int32_t n = 0;
  for (; tag && tag[n] && n < kTagUnits - 1; ++n) slot[n] = tag[n];
  slot[n] = 0;
}
}  // namespace

bool LcUSysLocale::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSysLocale") != 1) return true;
  LcUString::Initialize();
  LcUError::Initialize();
  LcURegistry::Initialize();
  return true;
}

void LcUSysLocale::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  overrideLanguage = 0;
  languagesBuilt = false;
  numbersRead = false;
  LcURegistry::Terminate();
  LcUError::Terminate();
  LcUString::Terminate();
}

void LcUSysLocale::BuildLanguages() {
  uint16_t id = overrideLanguage ? overrideLanguage : SystemLanguageId();
  LcUString tag;
  Store(languages[0], TagOfId(id, tag) ? tag.Get() : nullptr);
  Store(languages[1], TagOfId(DefaultCountry(id), tag) ? tag.Get() : nullptr);
  Store(languages[2], u"en-US");
  LcURegistry::RegGetW(u"InstalledLanguages", nullptr, nullptr, tag, LcURegistry::eREG_QUIET);
  if (tag.IsEmpty()) {
    tag = u"en-US";
    if (LcURegistryNameList* names = LcURegistry::ListNames(u"InstalledLanguages", 0, LcURegistry::eLIST_VALUES)) {
      if (names->IsValid()) names->GetName(tag);
      LcURegistry::FreeNameList(names);
    }
  }
  Store(languages[3], tag.Get());
  languagesBuilt = true;
}

const char16_t* LcUSysLocale::GetLanguage(int32_t index) {
  if (index < 0 || index >= eLANGUAGE_COUNT) return u"";
  if (!languagesBuilt) BuildLanguages();
  return languages[index];
}

void LcUSysLocale::SetOverrideLanguage(const char16_t* tag) {
  LcUError::LogF(u"LcUSysLocale::SetOverrideLanguage: %ls\n", tag ? tag : u"");
  overrideLanguage = tag ? GetLanguageIdFromTag(tag) : 0;
  languagesBuilt = false;
}

bool LcUSysLocale::GetLanguageTags(LcUString& primary, LcUString& neutral, int32_t form) {
  uint16_t id = overrideLanguage ? overrideLanguage : SystemLanguageId();
  bool (*name)(uint16_t, LcUString&) = form == 2 ? &AbbreviationOfId : &TagOfId;
  bool primaryFound = name(id, primary);
  return name(DefaultCountry(id), neutral) && primaryFound;
}

bool LcUSysLocale::LocaleNameFromId(uint16_t id, LcUString& out) {
  return TagOfId(id, out);
}

uint16_t LcUSysLocale::GetLanguageIdFromTag(const char16_t* tag) {
  if (!tag || !*tag) return 0;
  uint16_t id = FindLocale(
      [](uint16_t candidate, const char16_t* key) {
        LcUString form;
        return TagOfId(candidate, form) && LcUString::CompareNoCase(form.Get(), key) == 0;
      },
      tag);
  return id ? id : GetLanguageIdFromAbbreviation(tag);
}

uint16_t LcUSysLocale::GetLanguageIdFromAbbreviation(const char16_t* abbreviation) {
  if (!abbreviation || !*abbreviation) return 0;
  return FindLocale(
      [](uint16_t candidate, const char16_t* key) {
        LcUString form;
        return AbbreviationOfId(candidate, form) && LcUString::CompareNoCase(form.Get(), key) == 0;
      },
      abbreviation);
}

const LcUSysLocale::NumberFormat& LcUSysLocale::Numbers() {
  static NumberFormat numbers;
  if (!numbersRead) {
    ReadNumberFormat(numbers);
    numbersRead = true;
  }
  return numbers;
}

bool LcUSysLocale::CopySeparator(const char16_t* separator, char16_t* out, int32_t size) {
  int32_t length = 0;
  while (separator[length]) ++length;
  if (!out || length >= size) return false;
  for (int32_t i = 0; i <= length; ++i) out[i] = separator[i];
  return true;
}

bool LcUSysLocale::GetDecimalSeparator(char16_t* out, int32_t size) {
  return CopySeparator(Numbers().decimal, out, size);
}

bool LcUSysLocale::GetThousandSeparator(char16_t* out, int32_t size) {
  return CopySeparator(Numbers().thousand, out, size);
}

bool LcUSysLocale::GetListSeparator(char16_t* out, int32_t size) {
  return CopySeparator(Numbers().list, out, size);
}

int32_t LcUSysLocale::GetFractionalDigits() {
  return Numbers().fractionalDigits;
}

void LcUSysLocale::SetUserLocale() {
  const char* current = std::setlocale(LC_CTYPE, nullptr);
  if (current && current[0] == 'C' && !current[1]) std::setlocale(LC_ALL, "");
}
