#include <atomic>
#include <thread>

#include "OptionTesting.h"
#include "options/LcUOptValueEnabler.h"
#include "options/LcUOptionLock.h"
#include "options/LcUOptionValidator.h"

namespace OptionTesting {
namespace {
// Accepts a value only while another option is on: a validator that reads
// the tree from inside an assignment.
class GateValidator : public LcUOptionValidator {
public:
  bool Validate(LcUOptionSet*, int32_t, const LcUData&, LcUString*) override {
    return LcUOption::GetBoolean("mt.gate");
  }
};

class LcUOptionThreadTest : public OptionTest {};

TEST_F(LcUOptionThreadTest, ReadersAndWritersOnFourThreadsAgree) {
  ASSERT_TRUE(LcUOption::DefineBoolean("mt.gate", true));
  ASSERT_TRUE(LcUOption::DefineInt32("mt.value", 0, 0, 0, nullptr, new GateValidator));
  ASSERT_TRUE(LcUOption::DefineFloat("mt.x", 0.0));
  ASSERT_TRUE(LcUOption::DefineFloat("mt.y", 0.0));
  const int kRounds = 2000;
  std::atomic<int> torn{0};
  std::thread writer([] {
    for (int i = 1; i <= kRounds; ++i) LcUOption::SetInt32("mt.value", i);
  });
  std::thread pairWriter([] {
    for (int i = 1; i <= kRounds; ++i) {
      LcUOptionLock lock;
      LcUOption::SetFloat("mt.x", i);
      LcUOption::SetFloat("mt.y", -i);
    }
  });
  std::thread gate([] {
    for (int i = 0; i < kRounds; ++i) {
      LcUOptionLock lock;
      bool open = LcUOption::GetBoolean("mt.gate");
      LcUOption::SetBoolean("mt.gate", !open);
      LcUOption::SetBoolean("mt.gate", open);
    }
  });
  std::thread reader([&torn] {
    for (int i = 0; i < kRounds; ++i) {
      LcUOptionLock lock;
      if (LcUOption::GetFloat("mt.x") != -LcUOption::GetFloat("mt.y")) ++torn;
      LcUOption::GetSet("mt")->HasVisibleOptions(0);
    }
  });
  writer.join();
  pairWriter.join();
  gate.join();
  reader.join();
  EXPECT_EQ(torn.load(), 0);
  EXPECT_EQ(LcUOption::GetInt32("mt.value"), kRounds);
  EXPECT_EQ(LcUOption::GetFloat("mt.x"), kRounds);
  EXPECT_TRUE(TakeReports().empty());
}
}  // namespace
}  // namespace OptionTesting
