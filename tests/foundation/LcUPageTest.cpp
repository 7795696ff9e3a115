#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUPage.h"
#include "foundation/LcUPageFile.h"
#include "foundation/LcUPageOut.h"
#include "foundation/LcUPageOutObserver.h"
#include "foundation/LcUPageOutProgress.h"
#include "foundation/LcUSysError.h"

namespace {
constexpr uint64_t MB = 1 << 20;

// The machine as each test sets it.
struct Figures {
  uint64_t physical = 8192 * MB;
  uint64_t virtualSize = 128ull << 40;
  uint64_t addressSpace = 1ull << 40;
  uint64_t process = 100 * MB;
  uint64_t allocator = 10 * MB;
  int processQueries = 0;
} figures;

const LcUPage::Machine kMachine = {
    [] { return figures.physical; }, [] { return figures.virtualSize; }, [] { return figures.addressSpace; },
    [] {
      ++figures.processQueries;
      return figures.process;
    },
    [] { return figures.allocator; }};

size_t Count(const std::string& text, const char* piece) {
  size_t n = 0;
  for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++n;
  return n;
}

std::string Log() {
  std::string text;
  LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                         &text);
  return text;
}

class LcUPageTest : public ::testing::Test {
protected:
  void SetUp() override {
    figures = Figures();
    LcUPage::SetMachine(&kMachine);
    LcUPage::Initialize();
  }
  void TearDown() override {
    LcUPage::Terminate();
    LcUPage::SetMachine(nullptr);
  }
  // Restarts with other figures.
  void Restart() {
    LcUPage::Terminate();
    LcUPage::Initialize();
  }
};

// Answers from a script, one per call, then the last one; frees "units"
// from the allocator figure and reports progress.
class ScriptedPageOut : public LcUPageOut {
public:
  explicit ScriptedPageOut(std::vector<int32_t> answers, uint64_t freesPerCall = 0)
      : answers(std::move(answers)), freesPerCall(freesPerCall) {}
  int32_t PageOut(int32_t a, int32_t b, int32_t c, int32_t pass, LcUPageOutProgress* progress) override {
    passes.push_back(pass);
    if (onCall) onCall();
    if (freesPerCall) {
      figures.allocator -= freesPerCall;
      progress->done = progress->Check(1);
    }
    size_t k = passes.size() - 1;
    return answers.empty() ? 0 : answers[k < answers.size() ? k : answers.size() - 1];
  }
  std::vector<int32_t> answers;
  uint64_t freesPerCall;
  std::vector<int32_t> passes;
  std::function<void()> onCall;
};

class RecordingObserver : public LcUPageOutObserver {
public:
  int32_t OnPageOutBegin() override {
    ++begins;
    return veto;
  }
  void OnPageOutEnd(int32_t result) override { ends.push_back(result); }
  int32_t veto = 0;
  int begins = 0;
  std::vector<int32_t> ends;
};

TEST_F(LcUPageTest, LimitsFollowTheMachineAndAnExternalLimit) {
  // Plenty of memory: physical less 64 MB, the address space bigger.
  EXPECT_EQ(LcUPage::GetMemoryLimit(), 8128 * MB);
  EXPECT_EQ(LcUPage::GetProcessLimit(), 8128 * MB);
  EXPECT_FALSE(LcUPage::IsAddressSpaceBound());
  // A small machine keeps half; a tight address space wins.
  figures.physical = 100 * MB;
  figures.addressSpace = 40 * MB;
  Restart();
  EXPECT_EQ(LcUPage::GetMemoryLimit(), 50 * MB);
  EXPECT_EQ(LcUPage::GetProcessLimit(), 40 * MB);
  EXPECT_TRUE(LcUPage::IsAddressSpaceBound());

  // 1000 MB from outside: the margins win, to the byte.
  LcUPage::SetExternalProcessLimit(1000 * MB);
  EXPECT_EQ(LcUPage::GetProcessLimit(), 1048576000u);
  EXPECT_EQ(LcUPage::GetHardLimit(), 1038090240u);
  EXPECT_EQ(LcUPage::GetSoftLimit(), 1027604480u);
  EXPECT_EQ(LcUPage::GetAllocLimit(), 1038090240u);
  EXPECT_EQ(LcUPage::GetAllocHighThreshold(), 1032847360u);
  EXPECT_EQ(LcUPage::GetAllocLowThreshold(), 1027604480u);
  EXPECT_NE(Log().find("LcUPage::CalcDefaultProcessMemoryLimit External 1000 MB (50 Memory, 40 Address Space)\n"),
            std::string::npos);
  // 8 MB: every margin but the alloc high one exceeds its limit, so the products hold.
  LcUPage::SetExternalProcessLimit(8 * MB);
  EXPECT_EQ(LcUPage::GetHardLimit(), 7549747u);
  EXPECT_EQ(LcUPage::GetSoftLimit(), 6710886u);
  EXPECT_EQ(LcUPage::GetAllocHighThreshold(), 6794772u);
  EXPECT_EQ(LcUPage::GetAllocLowThreshold(), 6039797u);
  LcUPage::SetExternalProcessLimit(0);
  EXPECT_EQ(LcUPage::GetProcessLimit(), 40 * MB);
  LcUPage::SetMemoryLimitRatio(0.25);
  EXPECT_EQ(LcUPage::GetMemoryLimit(), 25 * MB);
  EXPECT_EQ(LcUPage::GetProcessLimit(), 25 * MB);
}

TEST_F(LcUPageTest, SettersOutOfRangeTakeTheDefaults) {
  const struct {
    void (*set)(double);
    double (*get)();
    double fallback;
  } ratios[] = {{LcUPage::SetHardRatio, LcUPage::GetHardRatio, 0.9},
                {LcUPage::SetSoftRatio, LcUPage::GetSoftRatio, 0.8},
                {LcUPage::SetAllocHighRatio, LcUPage::GetAllocHighRatio, 0.9},
                {LcUPage::SetAllocLowRatio, LcUPage::GetAllocLowRatio, 0.8}};
  for (const auto& r : ratios) {
    r.set(0.5);
    EXPECT_EQ(r.get(), 0.5);
    for (double bad : {0.0, 1.0, 1.5, -0.2}) {
      r.set(bad);
      EXPECT_EQ(r.get(), r.fallback) << bad;
    }
  }
  const struct {
    void (*set)(uint64_t);
    uint64_t (*get)();
    uint64_t fallback;
  } margins[] = {{LcUPage::SetHardMargin, LcUPage::GetHardMargin, 10 * MB},
                 {LcUPage::SetSoftMargin, LcUPage::GetSoftMargin, 20 * MB},
                 {LcUPage::SetAllocHighMargin, LcUPage::GetAllocHighMargin, 5 * MB},
                 {LcUPage::SetAllocLowMargin, LcUPage::GetAllocLowMargin, 10 * MB}};
  for (const auto& m : margins) {
    m.set(3 * MB);
    EXPECT_EQ(m.get(), 3 * MB);
    m.set(0);
    EXPECT_EQ(m.get(), m.fallback);
  }
}

TEST_F(LcUPageTest, AFixedAllocLimitHoldsUntilCleared) {
  LcUPage::SetAllocLimit(64 * MB);
  LcUPage::SetExternalProcessLimit(500 * MB);
  EXPECT_TRUE(LcUPage::IsAllocLimitFixed());
  EXPECT_EQ(LcUPage::GetAllocLimit(), 64 * MB);
  EXPECT_EQ(LcUPage::GetAllocHighThreshold(), 59 * MB);
  LcUPage::SetAllocLimit(0);
  EXPECT_FALSE(LcUPage::IsAllocLimitFixed());
  EXPECT_EQ(LcUPage::GetAllocLimit(), LcUPage::GetHardLimit());
}

TEST_F(LcUPageTest, PassesStopAtTheCapAndSkipFinishedPageOuts) {
  LcUPage::SetAllocLimit(20 * MB);
  figures.allocator = 30 * MB;
  ScriptedPageOut never({0});
  ScriptedPageOut once({1});
  LcUPage::AddPageOut(&never);
  LcUPage::AddPageOut(&once);
  RecordingObserver observer;
  LcUPage::AddObserver(&observer);
  size_t usageLines = Count(Log(), "Process memory (MB):");
  EXPECT_EQ(LcUPage::CheckLimits(), LcUPage::eFAILED);
  // A failure logs the memory figures; a success doesn't.
  EXPECT_EQ(Count(Log(), "Process memory (MB):"), usageLines + 1);
  EXPECT_EQ(never.passes, (std::vector<int32_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_EQ(once.passes, std::vector<int32_t>{0});
  EXPECT_EQ(observer.ends, std::vector<int32_t>{2});
  EXPECT_NE(Log().find("Page out failed - out of memory\n"), std::string::npos);
  // Out of memory sticks until cleared.
  EXPECT_TRUE(LcUPage::IsOutOfMemory());
  EXPECT_EQ(LcUPage::PageOut(0, 0, nullptr), LcUPage::eFAILED);
  EXPECT_EQ(never.passes.size(), 10u);
  LcUPage::ClearOutOfMemory();
  // 30 MB down to the low threshold of 16 MB, 6 MB a call: enough in pass 2.
  never.freesPerCall = 6 * MB;
  usageLines = Count(Log(), "Process memory (MB):");
  EXPECT_EQ(LcUPage::CheckLimits(), LcUPage::eSUCCEEDED);
  EXPECT_EQ(Count(Log(), "Process memory (MB):"), usageLines);
  EXPECT_EQ(observer.ends, (std::vector<int32_t>{2, 1}));
  EXPECT_NE(Log().find("Page out succeeded after pass 2\n"), std::string::npos);
  LcUPage::RemovePageOut(&never);
  LcUPage::RemovePageOut(&once);
  LcUPage::RemoveObserver(&observer);
}

TEST_F(LcUPageTest, NothingToDoTellsTheObserversToo) {
  RecordingObserver observer;
  LcUPage::AddObserver(&observer);
  EXPECT_EQ(LcUPage::PageOut(0, 0, nullptr), LcUPage::eNOTHING);
  EXPECT_EQ(observer.ends, std::vector<int32_t>{0});
  EXPECT_EQ(observer.begins, 0);
  LcUPage::RemoveObserver(&observer);
  // No page-outs at all, over the limit: failure.
  LcUPage::SetAllocLimit(5 * MB);
  EXPECT_EQ(LcUPage::CheckLimits(), LcUPage::eFAILED);
  EXPECT_TRUE(LcUPage::IsOutOfMemory());
}

TEST_F(LcUPageTest, AVetoIsReturnedAsItIs) {
  LcUPage::SetAllocLimit(5 * MB);
  ScriptedPageOut pageOut({1});
  LcUPage::AddPageOut(&pageOut);
  RecordingObserver first;
  RecordingObserver second;
  LcUPage::AddObserver(&first);
  LcUPage::AddObserver(&second);
  first.veto = 7;
  EXPECT_EQ(LcUPage::CheckLimits(), 7);
  EXPECT_TRUE(pageOut.passes.empty());
  EXPECT_EQ(second.ends, std::vector<int32_t>{7});
  EXPECT_FALSE(LcUPage::IsOutOfMemory());
  second.veto = 2;
  EXPECT_EQ(LcUPage::CheckLimits(), 2);
  EXPECT_TRUE(LcUPage::IsOutOfMemory());
  LcUPage::RemoveObserver(&first);
  LcUPage::RemoveObserver(&second);
  LcUPage::RemovePageOut(&pageOut);
}

TEST_F(LcUPageTest, APageOutMayRemoveItselfDuringItsCall) {
  LcUPage::SetAllocLimit(5 * MB);
  ScriptedPageOut leaving({0});
  ScriptedPageOut staying({0}, 0);
  leaving.onCall = [&] { LcUPage::RemovePageOut(&leaving); };
  LcUPage::AddPageOut(&leaving);
  LcUPage::AddPageOut(&staying);
  staying.freesPerCall = 2 * MB;
  EXPECT_EQ(LcUPage::CheckLimits(), LcUPage::eSUCCEEDED);
  EXPECT_EQ(leaving.passes.size(), 1u);
  // Gone from the list once the page-out ended.
  LcUPage::ClearOutOfMemory();
  figures.allocator = 10 * MB;
  LcUPage::CheckLimits();
  EXPECT_EQ(leaving.passes.size(), 1u);
  LcUPage::RemovePageOut(&staying);
}

TEST_F(LcUPageTest, ExternalCriteriaAndStressTest) {
  // Below every limit, the caller's own progress drives the page-out.
  struct Never : LcUPageOutProgress {
    int32_t Check(int32_t) override { return 0; }
  } external;
  ScriptedPageOut pageOut({1});
  LcUPage::AddPageOut(&pageOut);
  EXPECT_EQ(LcUPage::PageOut(1, 2, &external), LcUPage::eFAILED);
  EXPECT_FALSE(LcUPage::IsOutOfMemory());
  EXPECT_NE(Log().find("Page out to external criteria failed\n"), std::string::npos);
  LcUPage::SetStressTest(true);
  EXPECT_TRUE(LcUPage::IsMemoryLow(LcUPage::eLOW));
  EXPECT_EQ(LcUPage::CheckLimits(), LcUPage::eSUCCEEDED);
  LcUPage::SetStressTest(false);
  LcUPage::RemovePageOut(&pageOut);
}

TEST_F(LcUPageTest, MemoryIsLowByLevel) {
  LcUPage::SetAllocLimit(100 * MB);
  const struct {
    uint64_t total;
    bool low, high, limit;
  } cases[] = {{80 * MB, false, false, false},
               {90 * MB + 1, true, false, false},
               {95 * MB + 1, true, true, false},
               {100 * MB + 1, true, true, true}};
  for (const auto& c : cases) {
    figures.allocator = c.total;
    EXPECT_EQ(LcUPage::IsMemoryLow(LcUPage::eLOW), c.low) << c.total;
    EXPECT_EQ(LcUPage::IsMemoryLow(LcUPage::eHIGH), c.high) << c.total;
    EXPECT_EQ(LcUPage::IsMemoryLow(LcUPage::eLIMIT), c.limit) << c.total;
    EXPECT_FALSE(LcUPage::IsMemoryLow(3));
  }
}

TEST_F(LcUPageTest, TheProcessIsAskedOnlyAfterRealMovement) {
  figures.processQueries = 0;
  figures.allocator = 10 * MB;
  LcUPage::CheckLimits();
  EXPECT_EQ(figures.processQueries, 1);
  figures.allocator = 12 * MB;
  LcUPage::CheckLimits();
  EXPECT_EQ(figures.processQueries, 1);
  // Moving by the margin exactly is no movement.
  figures.allocator = 15 * MB;
  LcUPage::CheckLimits();
  EXPECT_EQ(figures.processQueries, 1);
  figures.allocator = 16 * MB;
  LcUPage::CheckLimits();
  EXPECT_EQ(figures.processQueries, 2);
}

TEST_F(LcUPageTest, AProcessPastItsLimitPagesOutThenClampsTheAllocator) {
  LcUPage::SetExternalProcessLimit(200 * MB);
  ScriptedPageOut pageOut({0}, 1 * MB);
  LcUPage::AddPageOut(&pageOut);
  // The hard-limit progress reads the process's use: freed units bring it down.
  figures.process = 250 * MB;
  figures.allocator = 60 * MB;
  int calls = 0;
  pageOut.onCall = [&] {
    if (++calls == 3) figures.process = 100 * MB;
  };
  EXPECT_EQ(LcUPage::PageOut(0, 0, nullptr), LcUPage::eSUCCEEDED);
  EXPECT_EQ(calls, 3);
  EXPECT_TRUE(LcUPage::IsLimitClamped());
  EXPECT_EQ(LcUPage::GetAllocLimit(), 57 * MB);
  LcUPage::RemovePageOut(&pageOut);
}

TEST_F(LcUPageTest, TheSoftLimitDecidesWhenTheAllocLimitResets) {
  LcUPage::SetExternalProcessLimit(1000 * MB);
  uint64_t soft = LcUPage::GetSoftLimit();
  // Past the hard limit: the allocator's limit is clamped to its total.
  figures.process = LcUPage::GetHardLimit() + 1;
  figures.allocator = 300 * MB;
  LcUPage::CheckLimits();
  EXPECT_TRUE(LcUPage::IsLimitClamped());
  EXPECT_EQ(LcUPage::GetAllocLimit(), 300 * MB);
  figures.process = soft;
  figures.allocator = 200 * MB;
  LcUPage::CheckLimits();
  EXPECT_TRUE(LcUPage::IsLimitClamped());
  figures.process = soft - 1;
  figures.allocator = 300 * MB;
  LcUPage::CheckLimits();
  EXPECT_FALSE(LcUPage::IsLimitClamped());
  EXPECT_EQ(LcUPage::GetAllocLimit(), LcUPage::GetHardLimit());
}

class MemoryPageFile : public LcUPageFile {
public:
  void* LoadPage(uint32_t pageNumber, void*, int32_t& status) override {
    loads.push_back(pageNumber);
    status = 3;
    return nullptr;
  }
  void DropPage(uint32_t pageNumber, uint32_t argument) override {
    drops.push_back(pageNumber);
    EXPECT_EQ(argument, 0xFFFFFFFFu);
  }
  std::vector<uint32_t> loads;
  std::vector<uint32_t> drops;
};

TEST_F(LcUPageTest, PageFilesKeepPagesByNumberFromOne) {
  MemoryPageFile file;
  int page = 0;
  EXPECT_FALSE(file.SetPage(0, &page));
  EXPECT_TRUE(file.SetPage(5, &page));
  EXPECT_EQ(file.PeekPage(5), &page);
  EXPECT_EQ(file.PeekPage(4), nullptr);
  EXPECT_EQ(file.PeekPage(6), nullptr);
  int32_t status = -1;
  EXPECT_EQ(file.GetPage(5, nullptr, status, 0, nullptr), &page);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(file.GetPage(2, nullptr, status, 5, nullptr), nullptr);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(file.loads, std::vector<uint32_t>{2});
  EXPECT_TRUE(file.SetPage(5, nullptr));
  EXPECT_TRUE(file.SetPage(5, nullptr));
  EXPECT_EQ(file.drops, std::vector<uint32_t>{5});
  LcUPage::SetPageFileCorrupt("slot 5");
  EXPECT_STREQ(LcUPage::GetPageFileError(), "slot 5");
  EXPECT_NE(Log().find("Page file corrupt: slot 5\n"), std::string::npos);
}
}  // namespace
