#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "RegistrySandbox.h"
#include "environment/LcURegistry.h"
#include "environment/LcUResourceLanguages.h"
#include "environment/LcUSysLocale.h"
#include "environment/LcUSysRegistry.h"

namespace {
using EnvironmentTesting::LogText;
using EnvironmentTesting::Narrow;
using EnvironmentTesting::RegistrySandbox;
using EnvironmentTesting::Wide;

// One location: the sandbox's own.
class Location : public LcURegistryLocationProvider {
public:
  explicit Location(const RegistrySandbox& sandbox) : root(sandbox.Key(u"v1")) {}
  int32_t GetLocationCount() const override { return 1; }
  const char16_t* GetLocation(int32_t) const override { return root.Get(); }
  LcUString root;
};

class LcUSysLocaleTest : public EnvironmentTesting::TempFolderTest {
protected:
  void SetUp() override {
    TempFolderTest::SetUp();
    sandbox = new RegistrySandbox(folder);
    location = new Location(*sandbox);
    LcUSysLocale::Initialize();
    previous = LcURegistry::SetRegistryLocationProvider(location);
  }
  void TearDown() override {
    LcUSysLocale::SetOverrideLanguage(nullptr);
    LcURegistry::SetRegistryLocationProvider(previous);
    for (int hive : {LcUSysRegistry::eHIVE_CURRENT_USER, LcUSysRegistry::eHIVE_LOCAL_MACHINE})
      LcUSysRegistry::DeleteKey(hive, sandbox->Base().Get(), true);
    LcUSysLocale::Terminate();
    delete location;
    delete sandbox;
    TempFolderTest::TearDown();
  }
  // Sets the machine's installed language value, or a named value, under
  // this version's location.
  void Installed(const char16_t* name, const char16_t* value) {
    ASSERT_TRUE(LcURegistry::RegSetW(u"InstalledLanguages", name, value, 0));
  }
  static std::vector<std::string> List() {
    std::vector<std::string> list;
    for (int32_t i = 0; i < LcUSysLocale::eLANGUAGE_COUNT; ++i) list.push_back(Narrow(LcUSysLocale::GetLanguage(i)));
    return list;
  }

  RegistrySandbox* sandbox = nullptr;
  Location* location = nullptr;
  LcURegistryLocationProvider* previous = nullptr;
};

TEST_F(LcUSysLocaleTest, OverrideLeadsTheListAndResourcesWalkEachTagOnce) {
  Installed(nullptr, u"it-IT");
  size_t before = LogText().size();
  LcUSysLocale::SetOverrideLanguage(u"fr-FR");
  EXPECT_EQ(LogText().substr(before), "LcUSysLocale::SetOverrideLanguage: fr-FR\n");
  EXPECT_EQ(List(), (std::vector<std::string>{"fr-FR", "fr-FR", "en-US", "it-IT"}));
  const char16_t* tags[LcUResourceLanguages::eCOUNT] = {};
  ASSERT_EQ(LcUResourceLanguages::Get(tags), 3);
  EXPECT_EQ(Narrow(tags[0]) + "," + Narrow(tags[1]) + "," + Narrow(tags[2]), "fr-FR,en-US,it-IT");
  EXPECT_STREQ(Narrow(LcUSysLocale::GetLanguage(4)).c_str(), "");
  EXPECT_STREQ(Narrow(LcUSysLocale::GetLanguage(-1)).c_str(), "");
}

TEST_F(LcUSysLocaleTest, RegionalOverrideGivesItsDefaultCountrySecond) {
  struct Case {
    const char16_t* tag;
    const char* first;
    const char* second;
  };
  for (const Case& c : {Case{u"de-AT", "de-AT", "de-DE"}, Case{u"fr-CA", "fr-CA", "fr-FR"},
                        Case{u"en-GB", "en-GB", "en-US"}, Case{u"DE-ch", "de-CH", "de-DE"}}) {
    LcUSysLocale::SetOverrideLanguage(c.tag);
    EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(0)), c.first) << Narrow(c.tag);
    EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(1)), c.second) << Narrow(c.tag);
    EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(2)), "en-US");
  }
  LcUString primary, neutral;
  LcUSysLocale::SetOverrideLanguage(u"de-AT");
  ASSERT_TRUE(LcUSysLocale::GetLanguageTags(primary, neutral, 0));
  EXPECT_EQ(Narrow(primary) + "/" + Narrow(neutral), "de-AT/de-DE");
  ASSERT_TRUE(LcUSysLocale::GetLanguageTags(primary, neutral, 2));
  EXPECT_EQ(Narrow(primary) + "/" + Narrow(neutral), "DEA/DEU");
}

TEST_F(LcUSysLocaleTest, ClearingTheOverrideGivesTheSystemsLanguageAgain) {
  LcUString primary, neutral;
  LcUSysLocale::GetLanguageTags(primary, neutral, 0);
  LcUSysLocale::SetOverrideLanguage(u"nl-BE");
  EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(0)), "nl-BE");
  LcUSysLocale::SetOverrideLanguage(nullptr);
  EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(0)), Narrow(primary));
  EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(1)), Narrow(neutral));
  // An unknown tag is no override.
  LcUSysLocale::SetOverrideLanguage(u"xx-YY");
  EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(0)), Narrow(primary));
}

TEST_F(LcUSysLocaleTest, InstalledLanguageFromValueThenFirstNameThenEnglish) {
  LcUSysLocale::SetOverrideLanguage(u"fr-FR");
  EXPECT_EQ(List()[3], "en-US") << "nothing in the registry";
  Installed(u"nl-NL", u"");
  LcUSysLocale::SetOverrideLanguage(u"fr-FR");
  EXPECT_EQ(List()[3], "nl-NL") << "the first value name";
  Installed(nullptr, u"sv-SE");
  LcUSysLocale::SetOverrideLanguage(u"fr-FR");
  EXPECT_EQ(List()[3], "sv-SE") << "the default value outranks the names";
  // Only the machine's hive counts.
  ASSERT_TRUE(LcURegistry::RegSetW(u"InstalledLanguages", nullptr, u"pl-PL", LcURegistry::eREG_USER));
  LcUSysLocale::SetOverrideLanguage(u"fr-FR");
  EXPECT_EQ(List()[3], "sv-SE");
}

TEST_F(LcUSysLocaleTest, IdsFromTagsAndAbbreviations) {
  struct Case {
    const char16_t* text;
    uint16_t id;
  };
  for (const Case& c : {Case{u"de-DE", 0x0407}, Case{u"DE-de", 0x0407}, Case{u"en-US", 0x0409},
                        Case{u"fr-CA", 0x0C0C}, Case{u"DEU", 0x0407}, Case{u"enu", 0x0409}, Case{u"xx-YY", 0},
                        Case{u"", 0}, Case{u"de", 0}})
    EXPECT_EQ(LcUSysLocale::GetLanguageIdFromTag(c.text), c.id) << Narrow(c.text);
  EXPECT_EQ(LcUSysLocale::GetLanguageIdFromAbbreviation(u"FRC"), 0x0C0C);
  EXPECT_EQ(LcUSysLocale::GetLanguageIdFromAbbreviation(u"fr-CA"), 0) << "a tag is no abbreviation";
  EXPECT_EQ(LcUSysLocale::GetLanguageIdFromAbbreviation(nullptr), 0);
  LcUString name;
  ASSERT_TRUE(LcUSysLocale::LocaleNameFromId(0x0C07, name));
  EXPECT_EQ(Narrow(name), "de-AT");
  EXPECT_FALSE(LcUSysLocale::LocaleNameFromId(0xFFFF, name));
}

TEST_F(LcUSysLocaleTest, SeparatorsNeedRoomForTheTerminator) {
  char16_t separator[LcUSysLocale::eSEPARATOR_UNITS + 1];
  ASSERT_TRUE(LcUSysLocale::GetDecimalSeparator(separator, LcUSysLocale::eSEPARATOR_UNITS + 1));
  int32_t length = LcUString::Len(separator);
  EXPECT_GE(length, 1);
  EXPECT_FALSE(LcUSysLocale::GetDecimalSeparator(separator, length));
  EXPECT_TRUE(LcUSysLocale::GetDecimalSeparator(separator, length + 1));
  EXPECT_FALSE(LcUSysLocale::GetListSeparator(nullptr, 6));
}

TEST(LcUSysLocaleComponent, StartsTheRegistryItReadsAndStopsIt) {
  int32_t before = LcURegistry::component.initCount;
  LcUSysLocale::Initialize();
  EXPECT_EQ(LcURegistry::component.initCount, before + 1);
  LcUSysLocale::Terminate();
  EXPECT_EQ(LcURegistry::component.initCount, before);
}

struct Order {
  const char* a;
  const char* b;
  bool ignoreCase;
  int32_t expected;
};

TEST(LcUSysLocaleCompare, NaturalOrderTable) {
  const Order table[] = {
      {"a2", "a10", false, -1},  // integers by length first
      {"a10", "a9", false, 1},
      {"a10", "a10", false, 0},
      {"a12", "a13", false, -1},  // then by the first differing digit
      {"file2.txt", "file10.txt", false, -1},
      {"a1b2", "a1b10", false, -1},
      {"v9.10", "v9.9", false, 1},
      {"a0123", "a019", false, -1},  // fractions: 0.123 < 0.19
      {"a010", "a09", false, -1},
      {"a01", "a1", false, -1},
      {"a0", "a00", false, -1},
      {"a007x", "a007y", false, -1},
      {"x1", "x_", false, 1},  // a digit sorts after punctuation...
      {"x1", "x~", false, 1},
      {"x1", "x.", false, 1},
      {"x1", "x", false, 1},
      {"x1", "xa", false, -1},  // ...and in plain order against a letter
      {"x1", "xA", false, -1},
      {"x1", "xz", false, -1},
      {"x1", "xZ", false, -1},
      {"x_", "x.", false, 1},  // no digit: plain order
      {"x~", "xa", false, 1},
      {"x_", "xA", false, 1},
      {"x1b", "x1a", false, 1},
      {"abc", "ABC", false, 1},
      {"abc", "ABC", true, 0},
      {"abc", "ABD", true, -1},
      {"B", "a", false, -1},
      {"B", "a", true, 1},
      {"", "", false, 0},
      {"", "a", false, -1},
      {"", "1", false, -1},
      {"ab", "abc", true, -1},
  };
  for (const Order& o : table) {
    LcUString a = Wide(o.a), b = Wide(o.b);
    EXPECT_EQ(LcUSysLocale::CompareNatural(a.Get(), b.Get(), o.ignoreCase), o.expected) << o.a << " : " << o.b;
    EXPECT_EQ(LcUSysLocale::CompareNatural(b.Get(), a.Get(), o.ignoreCase), -o.expected) << o.b << " : " << o.a;
  }
}

TEST(LcUSysLocaleCompare, RunsOfThousandsOfDigits) {
  std::string nines(3000, '9'), power = "1" + std::string(3000, '0');
  EXPECT_EQ(LcUSysLocale::CompareNatural(Wide("n" + nines).Get(), Wide("n" + power).Get(), false), -1);
  std::string low(5000, '7'), high(5000, '7');
  high[4999] = '8';
  EXPECT_EQ(LcUSysLocale::CompareNatural(Wide(low + "z").Get(), Wide(high + "a").Get(), false), -1);
  EXPECT_EQ(LcUSysLocale::CompareNatural(Wide(low + "b").Get(), Wide(low + "a").Get(), false), 1);
}
}  // namespace
