#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "environment/LcUSysTime.h"
#include "environment/LcUTime.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUData.h"

namespace {
using EnvironmentTesting::LogText;

const char kAllow[] = "model.performance.timing.allow_performance_counter_timing";
const char kPrefer[] = "model.performance.timing.prefer_performance_counter_timing";

// The counter's reports, as "severity:text".
std::vector<std::string> reports;
int Record(int severity, LcUComponent*, int32_t, void*, const char16_t* message) {
  reports.push_back(std::to_string(severity) + ":" + EnvironmentTesting::Narrow(message));
  return 1;
}

class LcUTimeTest : public ::testing::Test {
protected:
  void SetUp() override {
    LcUData::Initialize();
    LcUOption::Initialize();
    reports.clear();
    LcUSysError::SetHandler(5, &LcUSysTime::component, -1, Record);
  }
  void TearDown() override {
    LcUSysError::RemoveHandler(5, &LcUSysTime::component, -1);
    LcUOption::SetSavedOptions(nullptr);
    LcUOption::Terminate();
    LcUData::Terminate();
  }
  // Both options saved, as the readers make them, before the clocks start.
  static void Save(bool allow, bool prefer) {
    LcUExOptionSet* saved = new LcUExOptionSet;
    saved->AddRef();
    for (const char* path : {kAllow, kPrefer}) {
      ASSERT_TRUE(LcUOption::DefineBoolean(saved, path, path == kAllow ? allow : prefer));
      int32_t i = -1;
      for (LcUOptionSet* set = LcUOption::FindOption(saved, path, i); set; set = set->parent) {
        set->SetState(i, 0);
        if (set->parent) i = set->parent->Find(set->name.Get());
      }
    }
    LcUOption::SetSavedOptions(saved);
    saved->Release();
  }
  // The clock's own lines of the log written by `step`.
  template <typename Step>
  static std::string Logged(Step step) {
    size_t before = LogText().size();
    step();
    std::string lines, all = LogText().substr(before);
    for (size_t at = 0, end; at < all.size(); at = end + 1) {
      end = all.find('\n', at);
      if (end == std::string::npos) end = all.size() - 1;
      if (all.compare(at, 11, "LcUSysTime:") == 0) lines += all.substr(at, end + 1 - at);
    }
    return lines;
  }
};

TEST_F(LcUTimeTest, CounterDecisionByFrequencyAndResolution) {
  const std::string lp = "LcUSysTime: LP resolution ", hp = "LcUSysTime: HP resolution ";
  const std::string worse = "LcUSysTime: Disabling HP counter as resolution is worse than LP\n";
  struct Case {
    bool allowed;
    int64_t frequency;
    int64_t low;
    bool enabled;
    int64_t resolution;
    std::string log;
  };
  for (const Case& c : {Case{true, 10000000, 15625, true, 15625, lp + "15625\n" + hp + "0\n"},
                        Case{true, 1000000, 15625, true, 15625, lp + "15625\n" + hp + "1\n"},
                        Case{true, 1000000, 1, false, 1, lp + "1\n" + hp + "1\n" + worse},
                        Case{true, 64, 15625, false, 15625, lp + "15625\n" + hp + "15625\n" + worse},
                        Case{true, 65, 15625, true, 15625, lp + "15625\n" + hp + "15384\n"},
                        Case{true, 3000000, 0, true, 10000, lp + "10000\n" + hp + "0\n"},
                        Case{false, 10000000, 15625, false, 15625, lp + "15625\n"},
                        Case{true, 0, 15625, false, 15625, lp + "15625\n"}}) {
    reports.clear();
    EXPECT_EQ(Logged([&] { LcUSysTime::Configure(c.allowed, c.frequency, c.low); }), c.log) << c.frequency;
    EXPECT_EQ(LcUSysTime::IsHighResolution(), c.enabled) << c.frequency;
    EXPECT_EQ(LcUSysTime::GetFrequency(), c.enabled ? c.frequency : 0) << c.frequency;
    EXPECT_EQ(LcUSysTime::GetResolutionMicroseconds(), c.resolution) << c.frequency;
    EXPECT_EQ(reports, c.frequency ? std::vector<std::string>{}
                                   : std::vector<std::string>{"5:No high-performance counter"});
    if (!c.enabled) {
      EXPECT_EQ(LcUSysTime::GetTicks(), 0u);
    }
  }
}

TEST_F(LcUTimeTest, SavedOptionsDecideAtStart) {
  struct Case {
    bool allow;
    bool prefer;
    bool high;
    bool preferred;
  };
  LcUSysTime::Initialize();
  const bool counter = LcUSysTime::IsHighResolution();
  LcUSysTime::Terminate();
  for (const Case& c : {Case{true, false, counter, false}, Case{true, true, counter, counter},
                        Case{false, true, false, false}, Case{false, false, false, false}}) {
    Save(c.allow, c.prefer);
    LcUTime::Initialize();
    EXPECT_EQ(LcUSysTime::IsHighResolution(), c.high) << c.allow << c.prefer;
    EXPECT_EQ(LcUTime::PrefersHighResolution(), c.preferred) << c.allow << c.prefer;
    EXPECT_EQ(LcUOption::GetBoolean(kPrefer), c.prefer);
    if (c.preferred) {
      EXPECT_DOUBLE_EQ(LcUTime::GetSecondsPerTick(), 1.0 / double(LcUSysTime::GetFrequency()));
      uint64_t before = LcUSysTime::GetTicks(), now = 0;
      LcUTime::Now(now);
      EXPECT_GE(now, before);
      EXPECT_LE(now, LcUSysTime::GetTicks());
    } else {
      EXPECT_DOUBLE_EQ(LcUTime::GetSecondsPerTick(), 0.001);
      uint64_t before = LcUSysTime::GetLowTicks(), now = 0;
      LcUTime::Now(now);
      EXPECT_GE(now, before);
      EXPECT_LE(now, LcUSysTime::GetLowTicks());
    }
    LcUTime::Terminate();
    bool left = false;
    EXPECT_FALSE(LcUOption::TryGetBoolean(kAllow, left)) << "undefined at the last stop";
  }
}

TEST_F(LcUTimeTest, DefaultsAllowTheCounterAndPreferTheTickCount) {
  LcUTime::Initialize();
  EXPECT_TRUE(LcUOption::GetBoolean(kAllow));
  EXPECT_FALSE(LcUOption::GetBoolean(kPrefer));
  EXPECT_FALSE(LcUTime::PrefersHighResolution());
  LcUTime::Terminate();
}

TEST_F(LcUTimeTest, TimerBranchesAndTheirSpans) {
  struct Case {
    bool counter;
    int64_t frequency;
    bool prefer;
    int64_t micros;
    int64_t slack;
    uint32_t flags;
    uint64_t lowSpan;
    uint64_t highSpan;
    uint64_t slackSpan;
  };
  const int64_t threeDays = 3LL * 86400 * 1000000;
  for (const Case& c : {
           // The tick count alone: counter off, or slack to spare and no preference.
           Case{false, 1000000, false, 50000, 0, 1, 50, 0, 0},
           Case{true, 1000000, false, 50000, 15625, 1, 50, 0, 0},
           Case{true, 1000000, false, 1999, 20000, 1, 1, 0, 0},
           // The counter with the tick count behind it.
           Case{true, 1000000, false, 50000, 15624, 3, 34, 50000, 81},
           Case{true, 1000000, true, 50000, 1000000, 3, 34, 50000, 81},
           Case{true, 10000000, false, 15626, 0, 3, 0, 156260, 46},
           // At or below the resolution the counter alone decides.
           Case{true, 1000000, false, 15625, 0, 2, 0, 15625, 31},
           Case{true, 10000000, true, 100, 0, 2, 0, 1000, 31},
           // Spans of days on a fast counter.
           Case{true, 3000000000LL, false, threeDays, 0, 3, 259199984, 777600000000000ULL, 259200031},
           Case{true, 10000000, false, -5, 0, 2, 0, 0, 31}}) {
    LcUSysTime::Configure(c.counter, c.frequency, 15625);
    LcUTime::Configure(c.prefer);
    LcUTimer timer;
    timer.slack = 99;
    uint64_t lowBefore = LcUSysTime::GetLowTicks(), highBefore = LcUSysTime::GetTicks();
    LcUTime::StartTimer(timer, c.micros, c.slack);
    std::string what = std::to_string(c.micros) + "/" + std::to_string(c.slack);
    EXPECT_EQ(timer.flags, c.flags) << what;
    EXPECT_EQ(timer.lowSpan, c.lowSpan) << what;
    EXPECT_EQ(timer.highSpan, c.highSpan) << what;
    EXPECT_EQ(timer.slack, c.slackSpan) << what;
    EXPECT_GE(timer.lowStart, lowBefore) << what;
    EXPECT_LE(timer.lowStart, LcUSysTime::GetLowTicks()) << what;
    if (c.flags & LcUTimer::eHIGH_CLOCK) {
      EXPECT_GE(timer.highStart, highBefore) << what;
      EXPECT_LE(timer.highStart, LcUSysTime::GetTicks()) << what;
    } else {
      EXPECT_EQ(timer.highStart, 0u) << what;
    }
  }
}

TEST_F(LcUTimeTest, AnUnavailableCounterDropsThePreference) {
  LcUSysTime::Configure(false, 10000000, 15625);
  LcUTime::Configure(true);
  EXPECT_FALSE(LcUTime::PrefersHighResolution());
  EXPECT_DOUBLE_EQ(LcUTime::GetSecondsPerTick(), 0.001);
  LcUSysTime::Configure(true, 4000000, 15625);
  LcUTime::Configure(true);
  EXPECT_TRUE(LcUTime::PrefersHighResolution());
  EXPECT_DOUBLE_EQ(LcUTime::GetSecondsPerTick(), 0.25e-6);
}
TEST_F(LcUTimeTest, ATimerExpiresOnTheClockThatKeepsIt) {
  const uint64_t low = LcUSysTime::GetLowTicks(), high = LcUSysTime::GetTicks();
  struct Case {
    uint32_t flags;
    uint64_t lowStart, lowSpan, highStart, highSpan, slack;
    bool expired;
  };
  for (const Case& c : {Case{LcUTimer::eLOW_CLOCK, low, 1u << 30, 0, 0, 0, false},
                        Case{LcUTimer::eLOW_CLOCK, low, 0, 0, 0, 0, true},
                        Case{LcUTimer::eLOW_CLOCK, low - 5, 5, 0, 0, 0, true},
                        Case{LcUTimer::eHIGH_CLOCK, low, 0, high, 1ull << 62, 0, false},
                        Case{LcUTimer::eHIGH_CLOCK, low, 0, high, 0, 0, true},
                        // The counter says no, the tick count is past the slack.
                        Case{LcUTimer::eLOW_CLOCK | LcUTimer::eHIGH_CLOCK, low - 100, 50, high, 1ull << 62, 10, true},
                        Case{LcUTimer::eLOW_CLOCK | LcUTimer::eHIGH_CLOCK, low, 0, high, 1ull << 62, 1u << 30, false}}) {
    LcUTimer timer;
    timer.flags = c.flags;
    timer.lowStart = c.lowStart;
    timer.lowSpan = c.lowSpan;
    timer.highStart = c.highStart;
    timer.highSpan = c.highSpan;
    timer.slack = c.slack;
    EXPECT_EQ(LcUTime::HasExpired(timer), c.expired) << c.flags << " " << c.lowSpan << " " << c.highSpan;
  }
}
}  // namespace
