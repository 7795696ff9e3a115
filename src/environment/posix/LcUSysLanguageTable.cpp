#include "environment/posix/LcUSysLanguageTable.h"

#include "foundation/LcUString.h"

namespace {
const LcUSysLanguageTable::Entry kEntries[] = {
    {0x0401, u"ar-SA", u"ARA"}, {0x0402, u"bg-BG", u"BGR"}, {0x0403, u"ca-ES", u"CAT"},
    {0x0404, u"zh-TW", u"CHT"}, {0x0804, u"zh-CN", u"CHS"}, {0x0405, u"cs-CZ", u"CSY"},
    {0x0406, u"da-DK", u"DAN"}, {0x0407, u"de-DE", u"DEU"}, {0x0807, u"de-CH", u"DES"},
    {0x0C07, u"de-AT", u"DEA"}, {0x1007, u"de-LU", u"DEL"}, {0x0408, u"el-GR", u"ELL"},
    {0x0409, u"en-US", u"ENU"}, {0x0809, u"en-GB", u"ENG"}, {0x0C09, u"en-AU", u"ENA"},
    {0x1009, u"en-CA", u"ENC"}, {0x1409, u"en-NZ", u"ENZ"}, {0x1809, u"en-IE", u"ENI"},
    {0x040A, u"es-ES", u"ESP"}, {0x080A, u"es-MX", u"ESM"}, {0x0C0A, u"es-ES", u"ESN"},
    {0x040B, u"fi-FI", u"FIN"}, {0x040C, u"fr-FR", u"FRA"}, {0x080C, u"fr-BE", u"FRB"},
    {0x0C0C, u"fr-CA", u"FRC"}, {0x100C, u"fr-CH", u"FRS"}, {0x140C, u"fr-LU", u"FRL"},
    {0x040D, u"he-IL", u"HEB"}, {0x040E, u"hu-HU", u"HUN"}, {0x040F, u"is-IS", u"ISL"},
    {0x0410, u"it-IT", u"ITA"}, {0x0810, u"it-CH", u"ITS"}, {0x0411, u"ja-JP", u"JPN"},
    {0x0412, u"ko-KR", u"KOR"}, {0x0413, u"nl-NL", u"NLD"}, {0x0813, u"nl-BE", u"NLB"},
    {0x0414, u"nb-NO", u"NOR"}, {0x0415, u"pl-PL", u"PLK"}, {0x0416, u"pt-BR", u"PTB"},
    {0x0816, u"pt-PT", u"PTG"}, {0x0418, u"ro-RO", u"ROM"}, {0x0419, u"ru-RU", u"RUS"},
    {0x041A, u"hr-HR", u"HRV"}, {0x041B, u"sk-SK", u"SKY"}, {0x041D, u"sv-SE", u"SVE"},
    {0x081D, u"sv-FI", u"SVF"}, {0x041E, u"th-TH", u"THA"}, {0x041F, u"tr-TR", u"TRK"},
    {0x0422, u"uk-UA", u"UKR"}, {0x0424, u"sl-SI", u"SLV"}, {0x0425, u"et-EE", u"ETI"},
    {0x0426, u"lv-LV", u"LVI"}, {0x0427, u"lt-LT", u"LTH"}, {0x042A, u"vi-VN", u"VIT"},
};
constexpr int32_t kCount = int32_t(sizeof(kEntries) / sizeof(kEntries[0]));
}  // namespace

int32_t LcUSysLanguageTable::Count() {
  return kCount;
}

const LcUSysLanguageTable::Entry& LcUSysLanguageTable::At(int32_t index) {
  return kEntries[index];
}

const LcUSysLanguageTable::Entry* LcUSysLanguageTable::FindId(uint16_t id) {
  for (const Entry& entry : kEntries)
    if (entry.id == id) return &entry;
  return nullptr;
}

const LcUSysLanguageTable::Entry* LcUSysLanguageTable::FindTag(const char16_t* tag) {
  for (const Entry& entry : kEntries)
    if (LcUString::CompareNoCase(entry.tag, tag) == 0) return &entry;
  // "de" or "de-IT": the language's first entry.
  int32_t length = 0;
  while (tag[length] && tag[length] != u'-') ++length;
  if (length != 2) return nullptr;
  for (const Entry& entry : kEntries)
    if (LcUString::ToLowerUnit(tag[0]) == entry.tag[0] && LcUString::ToLowerUnit(tag[1]) == entry.tag[1])
      return &entry;
  return nullptr;
}
