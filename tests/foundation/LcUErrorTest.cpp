#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUError.h"
#include "foundation/LcUErrorStream.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

using ErrorTesting::ChildChecks;
using ErrorTesting::EndsWith;
using ErrorTesting::LogText;

namespace {
struct Report {
  int severity = -9;
  int32_t id = 0;
  void* data = nullptr;
  std::u16string message;
};
Report last;

int Take(int severity, LcUComponent*, int32_t id, void* data, const char16_t* message) {
  last = {severity, id, data, message ? message : u""};
  return 1;
}

std::string Formatted(const char* format, const void* pointer) {
  LcUStringA text;
  text.Format(format, pointer);
  return text.Get();
}

// The log's growth over one action, when that is at its end.
std::string Logged(const std::function<void()>& action) {
  std::string before = LogText();
  action();
  std::string after = LogText();
  return after.compare(0, before.size(), before) == 0 ? after.substr(before.size()) : "<log moved>";
}

class LcUErrorTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(LcUError::Initialize());
    LcUSysError::RegisterComponent(&record, "Comp");
    LcUSysError::SetHandler(-1, &record, -1, Take);
    last = {};
  }

  void TearDown() override {
    LcUSysError::UnregisterComponent(&record);
    LcUSysError::SetTraceLevel(0);
    LcUSysError::SetTraceFlags(0);
    LcUError::Terminate();
  }

  LcUComponent record{};
};
}  // namespace

TEST_F(LcUErrorTest, LogLineNamesSeverityComponentIdAndData) {
  struct Case {
    int severity;
    bool withComponent;
    int32_t id;
    uintptr_t data;
    const char16_t* message;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {LcUError::eERROR, true, -1, 0, u"plain", "ERROR: Comp, \"plain\"\n"},
      {LcUError::eWARNING, true, -1, 0, u"w", "WARNING: Comp, \"w\"\n"},
      {LcUError::ePRECONDITION, true, 3, 0, u"p", "PRECONDITION: Comp id(3), data(0), \"p\"\n"},
      {LcUError::eASSERT, true, -1, 0x1234, u"a", "ASSERT: Comp id(-1), data(1234), \"a\"\n"},
      {LcUError::eDEBUG, true, -1, 0, u"d", "DEBUG: Comp, \"d\"\n"},
      {5, true, -1, 0, u"five", "Comp, \"five\"\n"},
      {5, true, 4, 0xab, u"five", "Comp id(4), data(ab), \"five\"\n"},
      {9, true, -1, 0, u"odd", "UKNOWN: Comp, \"odd\"\n"},
      {LcUError::eWARNING, false, -1, 0, u"caf\u00e9 \u20ac", "WARNING: , \"caf\xC3\xA9 \xE2\x82\xAC\"\n"},
  };
  for (const Case& c : cases) {
    std::string line = Logged([&] {
      LcUSysError::Post(c.severity, c.withComponent ? &record : nullptr, c.id, reinterpret_cast<void*>(c.data),
                        c.message);
    });
    EXPECT_EQ(c.expected, line);
  }
}

TEST_F(LcUErrorTest, FormattedPostsCarryIdAndData) {
  int data = 0;
  LcUError::PostF(LcUError::eWARNING, &record, "n %d %s", 3, "x");
  EXPECT_EQ(u"n 3 x", last.message);
  // UTF-8 end to end, whatever the platform's narrow code page.
  LcUError::PostF(LcUError::eWARNING, &record, "caf\xC3\xA9 %s", "\xE2\x82\xAC");
  EXPECT_EQ(u"caf\u00e9 \u20ac", last.message);
  EXPECT_EQ(-1, last.id);
  EXPECT_EQ(nullptr, last.data);

  LcUError::PostF(LcUError::eERROR, &record, 7, &data, u"w %ls", u"\u00e9");
  EXPECT_EQ(LcUError::eERROR, last.severity);
  EXPECT_EQ(u"w \u00e9", last.message);
  EXPECT_EQ(7, last.id);
  EXPECT_EQ(&data, last.data);

  LcUError::PostF(LcUError::eWARNING, &record, 8, nullptr, "id form");
  EXPECT_EQ(8, last.id);
  LcUError::PostF(LcUError::eWARNING, &record, u"short %d", 4);
  EXPECT_EQ(u"short 4", last.message);

  LcUError::PostF(LcUError::eWARNING, &record, static_cast<const char*>(nullptr));
  EXPECT_EQ(u"", last.message) << "a null format posts an empty message";
}

TEST_F(LcUErrorTest, StreamInsertsEveryForm) {
  int target = 0;
  LcUString pointer;
  pointer.Format(u"%p", static_cast<void*>(&target));
  struct Case {
    std::function<void(LcUErrorStream&)> insert;
    std::u16string expected;
  };
  const std::vector<Case> cases = {
      {[](LcUErrorStream& s) { s << "caf\xC3\xA9"; }, u"caf\u00e9"},
      {[](LcUErrorStream& s) { s << LcUStringA("narrow"); }, u"narrow"},
      {[](LcUErrorStream& s) { s << u"wide"; }, u"wide"},
      {[](LcUErrorStream& s) { s << LcUString(u"string"); }, u"string"},
      {[](LcUErrorStream& s) { s << int8_t(-8) << int16_t(-16) << int32_t(-32); }, u"-8-16-32"},
      {[](LcUErrorStream& s) { s << uint8_t(200) << uint16_t(60000) << uint32_t(4000000000u); },
       u"200600004000000000"},
      {[](LcUErrorStream& s) { s << std::numeric_limits<int64_t>::min(); }, u"-9223372036854775808"},
      {[](LcUErrorStream& s) { s << std::numeric_limits<uint64_t>::max(); }, u"18446744073709551615"},
      {[](LcUErrorStream& s) { s << 0.5 << u" " << 1e20; }, u"0.5 1e+20"},
      {[&](LcUErrorStream& s) { s << static_cast<const void*>(&target); }, pointer.Get()},
      {[](LcUErrorStream& s) { s << true << false; }, u"TRUEFALSE"},
  };
  for (const Case& c : cases) {
    LcUErrorStream stream(LcUError::eWARNING, &record);
    c.insert(stream);
    EXPECT_EQ(c.expected, std::u16string(stream.message.Get()));
  }

  LcUErrorStream stream(LcUError::eASSERT, &record);
  stream.id = 12;
  stream.data = &target;
  stream << "n=" << 5;
  EXPECT_EQ(1, stream.Post());
  EXPECT_EQ(LcUError::eASSERT, last.severity);
  EXPECT_EQ(12, last.id);
  EXPECT_EQ(&target, last.data);
  EXPECT_EQ(u"n=5", last.message);
}

TEST_F(LcUErrorTest, LogWritersFormatIntoTheLogAsUTF8) {
  int target = 0;
  struct Case {
    std::function<void()> write;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {[] { LcUError::LogF("n %d %s", 1, "two"); }, "n 1 two"},
      {[] { LcUError::LogF(u"w %ls", u"\u00e9"); }, "w \xC3\xA9"},
      {[] { LcUError::LogDouble(2.5); }, "2.5"},
      {[] { LcUError::LogInt(-3); }, "-3"},
      {[] { LcUError::LogUInt(3000000000u); }, "3000000000"},
      {[] { LcUError::LogInt64(-5000000000LL); }, "-5000000000"},
      {[] { LcUError::LogUInt64(18000000000000000000ULL); }, "18000000000000000000"},
      {[&] { LcUError::LogPointer(&target); }, Formatted("%p", &target)},
      {[] { LcUError::LogWide(u"\u20ac"); }, "\xE2\x82\xAC"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.expected, Logged(c.write));
}

TEST_F(LcUErrorTest, TracesAreGatedByLevelAndPrefixedByFlags) {
  EXPECT_EQ("", Logged([] { EXPECT_FALSE(LcUError::TraceF(0, "off\n")); })) << "level 0 is off";
  LcUSysError::SetTraceLevel(2);
  EXPECT_EQ("", Logged([] { EXPECT_FALSE(LcUError::TraceF(3, "too deep\n")); }));

  struct Case {
    uint32_t flags;
    bool at;
    std::string pattern;
  };
  std::string thread = std::to_string(LcUSysError::CurrentThreadId());
  const std::vector<Case> cases = {
      {0, true, "Trace:m\n"},
      {1, false, "Trace:2:m\n"},
      {2, false, "Trace:m\n"},
      {2, true, "Trace:f\\.cpp:12:m\n"},
      {4, false, "Trace:" + thread + ":m\n"},
      {8, false, "Trace:[0-2][0-9]-[0-5][0-9]-[0-5][0-9]:m\n"},
      {15, true, "Trace:2:[0-9-]{8}:" + thread + ":f\\.cpp:12:m\n"},
  };
  for (const Case& c : cases) {
    LcUSysError::SetTraceFlags(c.flags);
    std::string line = Logged([&] {
      EXPECT_TRUE(c.at ? LcUError::TraceAtF(2, "f.cpp", 12, "%s\n", "m") : LcUError::TraceF(2, "%s\n", "m"));
    });
    EXPECT_TRUE(std::regex_match(line, std::regex(c.pattern))) << c.flags << ": " << line;
  }
  LcUSysError::SetTraceFlags(0);
  EXPECT_EQ("Trace:w \xC3\xA9\n", Logged([] { LcUError::TraceF(1, u"w %ls\n", u"\u00e9"); }));
  EXPECT_EQ("Trace:x\n", Logged([] { LcUError::TraceAtF(1, "f.cpp", 1, u"x\n"); }));
}

TEST_F(LcUErrorTest, UnhandledDebugIsOnlyLogged) {
  LcUSysError::RemoveHandler(-1, &record, -1);
  std::string line = Logged([&] { LcUError::PostF(LcUError::eDEBUG, &record, "quiet"); });
  EXPECT_EQ("DEBUG: Comp, \"quiet\"\n", line);
}

TEST_F(LcUErrorTest, StockHandlersPrintTheHandlerText) {
  int target = 0;
  const std::string data = Formatted("%p", &target);
  struct Case {
    LcUErrorHandler handler;
    int severity;
    const char16_t* message;
    std::string expected;
  };
  const std::vector<Case> cases = {
      {LcUError::PrintHandler, LcUError::eASSERT, u"bad at f.cpp:9",
       "Severity(ASSERT) component(Comp) id(5), data(" + data + "), msg(bad)\n"},
      {LcUError::PrintHandler, LcUError::ePRECONDITION, u" at start", "msg( at start)\n"},
      {LcUError::PrintHandler, LcUError::eERROR, u"kept at f.cpp", "msg(kept at f.cpp)\n"},
      {LcUError::PrintUncutHandler, LcUError::eASSERT, u"bad at f.cpp:9", "msg(bad at f.cpp:9)\n"},
      {LcUError::PrintHandler, 9, u"odd", "Severity(UNKNOWN)"},
      {LcUError::PrintAndExitHandler, LcUError::eWARNING, u"warned", "Severity(WARNING) component(Comp)"},
      {LcUError::PrintAndExitHandler, LcUError::eDEBUG, u"debugged", "msg(debugged)\n"},
      {LcUError::PrintAndExitIgnoringWarningsHandler, LcUError::eWARNING, u"ignored", ""},
  };
  for (const Case& c : cases) {
    testing::internal::CaptureStdout();
    int handled = c.handler(c.severity, &record, 5, &target, c.message);
    std::string shown = testing::internal::GetCapturedStdout();
    EXPECT_EQ(1, handled);
    if (c.expected.empty())
      EXPECT_EQ("", shown);
    else
      EXPECT_NE(std::string::npos, shown.find(c.expected)) << shown;
    EXPECT_TRUE(c.expected.empty() || shown.compare(0, 16, "Handle Severity(") == 0) << shown;
  }
}

TEST(LcUErrorDeathTest, StockHandlerExitsOnWhatItTreatsAsFatal) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  for (int severity : {0, 5}) {
    EXPECT_EXIT(
        {
          LcUError::Initialize();
          LcUError::PrintAndExitHandler(severity, nullptr, -1, nullptr, u"fatal");
        },
        testing::ExitedWithCode(1), "")
        << severity;
  }
}

TEST(LcUErrorDeathTest, StockHandlersPrintRawTextWithoutStrings) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        testing::internal::CaptureStdout();
        LcUError::PrintHandler(LcUError::eERROR, nullptr, -1, nullptr, u"raw \u00e9 text");
        std::string shown = testing::internal::GetCapturedStdout();
        checks.Expect(shown == "Error while LcUString not available: raw ? text", shown);
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUErrorDeathTest, UnhandledErrorIsLoggedThenFatal) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        static LcUComponent record;
        LcUError::Initialize();
        LcUSysError::RegisterComponent(&record, "Comp");
        LcUSysError::SetFatalHook(ErrorTesting::LogToStderr);
        LcUError::PostF(LcUError::eERROR, &record, "boom %d", 1);
      },
      "ERROR: Comp, \"boom 1\"\nLcUSysError: No handler for error\n");
}

TEST(LcUErrorDeathTest, FatalTextCallsTheHookLogsAndExits) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        LcUError::Initialize();
        LcUError::SetFatalTextHook(
            [](void* context, const char* text, int32_t kind, int32_t a, int32_t b) {
              std::fprintf(stderr, "hook %s %s %d %d %d ", static_cast<const char*>(context), text, kind, a, b);
            },
            const_cast<char*>("ctx"));
        LcUSysError::SetExitHook([](int code) { ErrorTesting::LogToStderr(); });
        LcUError::FatalText("gone", false);
        LcUError::FatalText("for good", true);
      },
      // The exit hook shows the log after the hook's line.
      testing::ExitedWithCode(3), "^hook ctx for good 2 0 -1 gonefor good$");
}

// A text too long for the log is refused with a line at its severity; no
// handler sees it, so none being set is no fatal stop, and the writers'
// lock is free again afterwards.
TEST_F(LcUErrorTest, TooLongToLogIsOnlyLogged) {
  LcUSysError::SetHandler(0, &LcUSysError::component, -1, Take);
  const std::string tooLong(LcUSysError::eLOG_BUFFER_SIZE, 't');
  std::string line = Logged([&] { LcUError::LogF("%s", tooLong.c_str()); });
  EXPECT_EQ("ERROR: LcUSysError, \"Too long to log\"\n", line);
  EXPECT_EQ(-9, last.severity);
  std::thread other([] { LcUError::LogF("from another thread\n"); });
  other.join();
  EXPECT_TRUE(EndsWith(LogText(), "from another thread\n"));
  LcUSysError::RemoveHandler(0, &LcUSysError::component, -1);
}
