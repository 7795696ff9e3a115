#include <cstring>
#include <ctime>
#include <string>

#include "EnvironmentTesting.h"
#include "environment/LcUSysTime.h"

namespace {
using EnvironmentTesting::Narrow;
using EnvironmentTesting::Wide;

TEST(LcUSysTimeISO, ValidTextsNormaliseAsTheCalendarCarries) {
  struct Case {
    const char* text;
    int64_t time;
  };
  for (const Case& c : {Case{"1970-01-01T00:00:00", 0}, Case{"2001-09-09T01:46:40", 1000000000},
                        Case{"2000-02-29T12:00:00", 951825600}, Case{"1999-02-31T00:00:00", 920419200},
                        Case{"2024-02-30T24:00:00", -1}, Case{"2023-02-29T00:00:00", 1677628800},
                        Case{"2016-12-31T23:59:60", 1483228800}, Case{"2016-12-31T23:59:61", 1483228801},
                        Case{"3000-12-31T23:59:59", 32535215999}}) {
    int64_t time = -2;
    bool parsed = LcUSysTime::ParseISOTime(Wide(c.text).Get(), time);
    EXPECT_EQ(parsed, c.time >= 0) << c.text;
    if (parsed) {
      EXPECT_EQ(time, c.time) << c.text;
    }
  }
}

TEST(LcUSysTimeISO, MalformedTextsAreRefused) {
  for (const char* text :
       {"1970-01-01T00:00:0", "1970-01-01T00:00:000", "", "1970-13-01T00:00:00", "1970-00-01T00:00:00",
        "1970-01-00T00:00:00", "1970-01-32T00:00:00", "1970-01-01T24:00:00", "1970-01-01T00:60:00",
        "1970-01-01T00:00:62", " 970-01-01T00:00:00", "+970-01-01T00:00:00", "1970-+1-01T00:00:00",
        "1970- 1-01T00:00:00", "1970-01-01T00:00:-1", "1970-01-01 00:00:00", "1970/01/01T00:00:00",
        "1970-01-01t00:00:00", "197a-01-01T00:00:00", "1969-12-31T23:59:59", "3001-01-01T00:00:00",
        "1-1-1T1:1:1xxxxxxxx"}) {
    int64_t time = 77;
    EXPECT_FALSE(LcUSysTime::ParseISOTime(Wide(text).Get(), time)) << text;
    EXPECT_EQ(time, 77) << text;
  }
  int64_t time = 0;
  EXPECT_FALSE(LcUSysTime::ParseISOTime(nullptr, time));
}

TEST(LcUSysTimeISO, FormatsInUTCAndRefusesWhatItCannotRead) {
  LcUString text;
  ASSERT_TRUE(LcUSysTime::FormatISOTime(0, text));
  EXPECT_EQ(Narrow(text), "1970-01-01T00:00:00");
  ASSERT_TRUE(LcUSysTime::FormatISOTime(951825600 + 3723, text));
  EXPECT_EQ(Narrow(text), "2000-02-29T13:02:03");
  ASSERT_TRUE(LcUSysTime::FormatISOTime(32535215999, text));
  EXPECT_EQ(Narrow(text), "3000-12-31T23:59:59");
  text = u"kept";
  EXPECT_FALSE(LcUSysTime::FormatISOTime(-1, text));
  EXPECT_FALSE(LcUSysTime::FormatISOTime(32535216000, text));
  EXPECT_EQ(Narrow(text), "kept");
}

TEST(LcUSysTimeISO, RoundTripsAgreeWithTheCLibrary) {
  // Steps of a prime number of seconds cross every field's carry.
  for (int64_t time = 0; time < 32535215999; time += 1000003 * 997) {
    LcUString text;
    ASSERT_TRUE(LcUSysTime::FormatISOTime(time, text)) << time;
    time_t seconds = time_t(time);
    char expected[32];
    std::strftime(expected, sizeof(expected), "%Y-%m-%dT%H:%M:%S", std::gmtime(&seconds));
    ASSERT_EQ(Narrow(text), expected) << time;
    int64_t back = -1;
    ASSERT_TRUE(LcUSysTime::ParseISOTime(text.Get(), back)) << expected;
    ASSERT_EQ(back, time) << expected;
  }
}

TEST(LcUSysTime, FileTimesAndTickCountsConvertUnsigned) {
  struct Case {
    uint64_t fileTime;
    int64_t time;
  };
  for (const Case& c : {Case{116444736000000000ULL, 0}, Case{116444736009999999ULL, 0},
                        Case{116444736000000000ULL + 10000000ULL * 1000000000ULL, 1000000000},
                        Case{0, -11644473600LL}, Case{1ULL << 63, 922337203685LL - 11644473600LL}})
    EXPECT_EQ(LcUSysTime::FileTimeToTime(c.fileTime), c.time) << c.fileTime;
  EXPECT_GT(LcUSysTime::TicksToSeconds((1ULL << 63) + 1), 9.2e15);
  EXPECT_DOUBLE_EQ(LcUSysTime::TicksToSeconds(1500), 1.5);
  int64_t before = int64_t(std::time(nullptr));
  int64_t now = LcUSysTime::GetTime();
  EXPECT_GE(now, before);
  EXPECT_LE(now, int64_t(std::time(nullptr)));
  uint64_t low = LcUSysTime::GetLowTicks();
  EXPECT_LE(low, LcUSysTime::GetLowTicks());
}

TEST(LcUSysTime, DateTimeTextIsBothPartsAndMustFit) {
  char16_t date[100], clock[100], both[200];
  ASSERT_TRUE(LcUSysTime::FormatDate(86400 + 3661, date, 100, false));
  ASSERT_TRUE(LcUSysTime::FormatTimeOfDay(86400 + 3661, clock, 100, false));
  ASSERT_TRUE(LcUSysTime::FormatDateTime(86400 + 3661, both, 200, false));
  EXPECT_EQ(Narrow(both), Narrow(date) + " " + Narrow(clock));
  int32_t length = LcUString::Len(both);
  EXPECT_FALSE(LcUSysTime::FormatDateTime(86400 + 3661, both, length, false));
  EXPECT_TRUE(LcUSysTime::FormatDateTime(86400 + 3661, both, length + 1, false));
  EXPECT_FALSE(LcUSysTime::FormatDate(86400, date, 2, false));
}
}  // namespace
