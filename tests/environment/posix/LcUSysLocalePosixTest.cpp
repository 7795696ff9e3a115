#include <string>

#include "EnvironmentTesting.h"
#include "LocaleEnvironment.h"
#include "environment/LcUSysLocale.h"
#include "environment/LcUSysTime.h"
#include "environment/posix/LcUSysLocaleVariable.h"

// glibc's newlocale keeps the split LOCPATH it searched; only the tests set
// that variable.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:__argz_add_sep\n";
}

namespace {
using EnvironmentTesting::LocaleEnvironment;
using EnvironmentTesting::Narrow;

// Each case starts the component afresh, so nothing read before is kept.
class LcUSysLocalePosix : public ::testing::Test {
protected:
  void SetUp() override { LcUSysLocale::Initialize(); }
  void TearDown() override { LcUSysLocale::Terminate(); }
  void Restart() {
    LcUSysLocale::Terminate();
    LcUSysLocale::Initialize();
  }
  LocaleEnvironment environment;
};

TEST(LcUSysLocaleVariable, ValuesToTags) {
  struct Case {
    const char* value;
    const char* tag;  // null: refused
  };
  for (const Case& c : {Case{"de_DE.UTF-8@euro", "de-DE"}, Case{"de_DE", "de-DE"}, Case{"fr_CA.ISO-8859-1", "fr-CA"},
                        Case{"C", "en-US"}, Case{"POSIX", "en-US"}, Case{"C.UTF-8", "en-US"}, Case{"", "en-US"},
                        Case{"de", "de"}, Case{"ast_ES", "ast-ES"}, Case{"es_419", "es-419"},
                        Case{"d_DE", nullptr}, Case{"deut_DE", nullptr},
                        Case{"de-DE", nullptr}, Case{"de_", nullptr}, Case{"de_DE x", nullptr},
                        Case{"de_ABCDEFGHIJ", nullptr}, Case{"POSIXLY", nullptr}}) {
    LcUString tag(u"stale");
    EXPECT_EQ(LcUSysLocaleVariable::ToTag(c.value, tag), c.tag != nullptr) << c.value;
    EXPECT_EQ(Narrow(tag), c.tag ? c.tag : "") << c.value;
  }
}

TEST_F(LcUSysLocalePosix, LanguageFollowsTheVariablesInOrder) {
  struct Case {
    const char* language;
    const char* all;
    const char* messages;
    const char* lang;
    const char* first;
    const char* second;
  };
  for (const Case& c : {Case{"de_AT:en", "fr_FR.UTF-8", nullptr, "it_IT", "de-AT", "de-DE"},
                        Case{nullptr, "pt_PT.UTF-8", "sv_SE", "it_IT", "pt-PT", "pt-BR"},
                        Case{nullptr, nullptr, "sv_FI", "it_IT", "sv-FI", "sv-SE"},
                        Case{nullptr, nullptr, nullptr, "it_CH.UTF-8", "it-CH", "it-IT"},
                        Case{nullptr, nullptr, nullptr, "C", "en-US", "en-US"},
                        Case{nullptr, nullptr, nullptr, "de", "de-DE", "de-DE"},
                        Case{":", nullptr, nullptr, "nl_BE", "nl-BE", "nl-NL"},
                        Case{nullptr, nullptr, nullptr, nullptr, "en-US", "en-US"}}) {
    environment.Set("LANGUAGE", c.language);
    environment.Set("LC_ALL", c.all);
    environment.Set("LC_MESSAGES", c.messages);
    environment.Set("LANG", c.lang);
    Restart();
    EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(0)), c.first) << c.first;
    EXPECT_EQ(Narrow(LcUSysLocale::GetLanguage(1)), c.second) << c.first;
  }
}

TEST_F(LcUSysLocalePosix, UserLocaleNameFromAllThenCategoryThenLang) {
  LcUString name;
  environment.Set("LANG", "it_IT.UTF-8");
  ASSERT_TRUE(LcUSysLocale::GetUserLocaleName(name));
  EXPECT_EQ(Narrow(name), "it-IT");
  environment.Set("LC_CTYPE", "de_DE.UTF-8@euro");
  ASSERT_TRUE(LcUSysLocale::GetUserLocaleName(name));
  EXPECT_EQ(Narrow(name), "de-DE");
  environment.Set("LC_ALL", "POSIX");
  ASSERT_TRUE(LcUSysLocale::GetUserLocaleName(name));
  EXPECT_EQ(Narrow(name), "en-US");
}

TEST_F(LcUSysLocalePosix, NumberConventionsOfTheNumericLocale) {
  struct Case {
    const char* numeric;
    const char* decimal;
    const char* thousand;
    const char* list;
  };
  for (const Case& c : {Case{"C", ".", "", ","}, Case{"de_DE.UTF-8", ",", ".", ";"},
                        Case{"fr_FR.UTF-8", ",", "\u202f", ";"}, Case{"xx_XX.UTF-8", ".", "", ","}}) {
    environment.Set("LC_NUMERIC", c.numeric);
    Restart();
    char16_t text[LcUSysLocale::eSEPARATOR_UNITS + 1];
    ASSERT_TRUE(LcUSysLocale::GetDecimalSeparator(text, 6));
    EXPECT_EQ(Narrow(text), c.decimal) << c.numeric;
    ASSERT_TRUE(LcUSysLocale::GetThousandSeparator(text, 6));
    EXPECT_EQ(Narrow(text), c.thousand) << c.numeric;
    ASSERT_TRUE(LcUSysLocale::GetListSeparator(text, 6));
    EXPECT_EQ(Narrow(text), c.list) << c.numeric;
    EXPECT_EQ(LcUSysLocale::GetFractionalDigits(), 2);
  }
  // Read once: a change afterwards is seen only after a restart.
  environment.Set("LC_NUMERIC", "de_DE.UTF-8");
  char16_t text[LcUSysLocale::eSEPARATOR_UNITS + 1];
  ASSERT_TRUE(LcUSysLocale::GetDecimalSeparator(text, 6));
  EXPECT_EQ(Narrow(text), ".");
  Restart();
  ASSERT_TRUE(LcUSysLocale::GetDecimalSeparator(text, 6));
  EXPECT_EQ(Narrow(text), ",");
}

TEST_F(LcUSysLocalePosix, DateAndTimeTextsInTheTimeLocale) {
  struct Case {
    const char* locale;
    const char* zone;
    bool local;
    const char* expected;
  };
  // 1970-01-02 01:01:01 UTC.
  for (const Case& c : {Case{"C", "UTC", true, "01/02/70 01:01:01"},
                        Case{"de_DE.UTF-8", "UTC", true, "02.01.1970 01:01:01"},
                        Case{"de_DE.UTF-8", "EST5", false, "02.01.1970 01:01:01"},
                        Case{"de_DE.UTF-8", "EST5", true, "01.01.1970 20:01:01"}}) {
    environment.Set("LC_TIME", c.locale);
    environment.Set("TZ", c.zone);
    char16_t text[64];
    ASSERT_TRUE(LcUSysTime::FormatDateTime(86400 + 3661, text, 64, c.local)) << c.locale;
    EXPECT_EQ(Narrow(text), c.expected) << c.locale << " " << c.zone;
  }
}

TEST_F(LcUSysLocalePosix, SetUserLocaleOnlyLeavesTheCLocale) {
  environment.Set("LC_ALL", "de_DE.UTF-8");
  std::setlocale(LC_ALL, "C");
  LcUSysLocale::SetUserLocale();
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8");
  environment.Set("LC_ALL", "fr_FR.UTF-8");
  LcUSysLocale::SetUserLocale();
  EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "de_DE.UTF-8") << "no longer C: kept";
  std::setlocale(LC_ALL, "C");
}
}  // namespace
