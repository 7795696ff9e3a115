#include <cstdlib>
#include <ctime>

#include "EnvironmentTesting.h"
#include "environment/LcUSysLocale.h"
#include "environment/LcUSysTime.h"

namespace {
using EnvironmentTesting::Narrow;

// The C runtime's zone follows TZ; the user's formats are the prefix's.
class LcUSysTimeWin32 : public ::testing::Test {
protected:
  void SetUp() override {
    _putenv_s("TZ", "UTC0");
    _tzset();
  }
  void TearDown() override {
    _putenv_s("TZ", "");
    _tzset();
  }
};

TEST_F(LcUSysTimeWin32, DateAndTimeTextsInTheUsersFormats) {
  LcUString locale;
  ASSERT_TRUE(LcUSysLocale::GetUserLocaleName(locale));
  if (Narrow(locale) != "en-US") GTEST_SKIP() << "formats pinned for en-US only, the user's is " << Narrow(locale);
  struct Case {
    int64_t time;
    bool local;
    const char* expected;
  };
  for (const Case& c : {Case{86400 + 3661, true, "1/2/1970 1:01:01 AM"}, Case{86400 + 3661, false, "1/2/1970 1:01:01 AM"},
                        Case{951825600, false, "2/29/2000 12:00:00 PM"}}) {
    char16_t text[64];
    ASSERT_TRUE(LcUSysTime::FormatDateTime(c.time, text, 64, c.local));
    EXPECT_EQ(Narrow(text), c.expected) << c.time;
  }
}

TEST_F(LcUSysTimeWin32, CounterAndTickCountAdvance) {
  EXPECT_GT(LcUSysTime::GetTime(), 1700000000);
  uint64_t low = LcUSysTime::GetLowTicks();
  EXPECT_GT(low, 0u);
  EXPECT_GE(LcUSysTime::GetSeconds(), double(low) / 1000);
}
}  // namespace
