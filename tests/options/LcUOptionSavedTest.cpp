#include "OptionTesting.h"
#include "options/LcUOptInt32MinValidator.h"

namespace OptionTesting {
namespace {
constexpr uint32_t D = LcUOptionSet::eDEFAULT;

class LcUOptionSavedTest : public OptionTest {
protected:
  void SetUp() override {
    OptionTest::SetUp();
    saved = new LcUExOptionSet;
    saved->AddRef();
  }
  void TearDown() override {
    saved->Release();
    OptionTest::TearDown();
  }
  // A saved leaf with its state word; the sets on its way carry state 0,
  // as the readers make them.
  void Save(const char* path, const LcUData& value, uint32_t state) {
    ASSERT_TRUE(LcUOption::DefineData(saved, path, value));
    int32_t i = -1;
    LcUOptionSet* set = LcUOption::FindOption(saved, path, i);
    set->SetState(i, state);
    for (; set->parent; set = set->parent) {
      LcUOptionSet* up = set->parent;
      up->SetState(up->Find(set->name.Get()), 0);
    }
  }
  LcUExOptionSet* saved = nullptr;
};

TEST_F(LcUOptionSavedTest, OptionsDefinedBeforeTakeSavedValuesByMerge) {
  ASSERT_TRUE(LcUOption::DefineInt32("cache_size", 10));
  ASSERT_TRUE(LcUOption::DefineInt32("cache_count", 3));
  Save("cache_size", Int(20), 0);
  Save("cache_count", Int(5), D);
  LcUOption::SetSavedOptions(saved);
  EXPECT_EQ(LcUOption::GetInt32("cache_size"), 20);
  EXPECT_FALSE(IsDefault("cache_size"));
  // Marked as default, it moves the default itself.
  EXPECT_EQ(LcUOption::GetInt32("cache_count"), 5);
  EXPECT_TRUE(IsDefault("cache_count"));
  EXPECT_EQ(LcUOption::GetInt32(LcUOption::GetDefaultRoot(), "cache_count"), 5);
  EXPECT_EQ(LcUOption::GetInt32(LcUOption::GetDefaultRoot(), "cache_size"), 10);
  ASSERT_TRUE(LcUOption::SetInt32("cache_count", 9));
  LcUOption::ResetToDefaults("cache_count");
  EXPECT_EQ(LcUOption::GetInt32("cache_count"), 5);
  EXPECT_TRUE(TakeReports().empty());
}

TEST_F(LcUOptionSavedTest, OptionsDefinedAfterPickUpSavedValuesAtDefinition) {
  Save("late.size", Int(20), 0);
  Save("late.marked", Int(6), D);
  Save("late.same", Int(1), 0);
  Save("late.kind", Float(2.0), 0);
  LcUOption::SetSavedOptions(saved);
  ASSERT_TRUE(LcUOption::DefineInt32("late.size", 10));
  ASSERT_TRUE(LcUOption::DefineInt32("late.marked", 3));
  ASSERT_TRUE(LcUOption::DefineInt32("late.same", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("late.kind", 4));
  EXPECT_EQ(LcUOption::GetInt32("late.size"), 20);
  EXPECT_EQ(State("late.size"), 0u);
  EXPECT_EQ(LcUOption::GetInt32(LcUOption::GetDefaultRoot(), "late.size"), 10);
  EXPECT_EQ(LcUOption::GetInt32("late.marked"), 6);
  EXPECT_EQ(LcUOption::GetInt32(LcUOption::GetDefaultRoot(), "late.marked"), 6);
  // Equal to the default, or of another kind: the default stands.
  EXPECT_TRUE(IsDefault("late.same"));
  EXPECT_EQ(LcUOption::GetInt32("late.kind"), 4);
  EXPECT_TRUE(IsDefault("late.kind"));
}

TEST_F(LcUOptionSavedTest, AWrongKindWarnsAndLeavesTheLiveOptionAlone) {
  ASSERT_TRUE(LcUOption::DefineInt32("w.size", 10));
  Save("w.size", Float(2.0), 0);
  LcUOption::SetSavedOptions(saved);
  EXPECT_EQ(LcUOption::GetInt32("w.size"), 10);
  EXPECT_TRUE(IsDefault("w.size"));
  EXPECT_EQ(TakeReports(), std::vector<std::string>{"1:Failed to set saved values, error 1"});
}

TEST_F(LcUOptionSavedTest, ATopLevelSavedDefaultOfTheWrongKindWarnsForBothTrees) {
  ASSERT_TRUE(LcUOption::DefineInt32("w", 10));
  Save("w", Float(2.0), D);
  LcUOption::SetSavedOptions(saved);
  EXPECT_EQ(TakeReports(), (std::vector<std::string>{"1:Failed to set saved values, error 1",
                                                     "1:Failed to set saved default values, error 1"}));
}

TEST_F(LcUOptionSavedTest, ASavedValueTheValidatorRefusesKeepsTheDefault) {
  Save("v.count", Int(0), 0);
  LcUOption::SetSavedOptions(saved);
  ASSERT_TRUE(LcUOption::DefineInt32("v.count", 3, 0, 0, nullptr, new LcUOptInt32MinValidator(1)));
  EXPECT_EQ(LcUOption::GetInt32("v.count"), 3);
  EXPECT_TRUE(IsDefault("v.count"));
  std::vector<std::string> taken = TakeReports();
  ASSERT_EQ(taken.size(), 1u);
  EXPECT_EQ(taken[0].rfind("1:", 0), 0u);
  EXPECT_NE(taken[0].find("v.count"), std::string::npos);
}

TEST_F(LcUOptionSavedTest, SavedSetsMergeIntoSetsDefinedLater) {
  LcUExOptionSet* savedGroup = new LcUExOptionSet;
  LcUOption::DefineInt32(savedGroup, "a", 7);
  LcUOption::DefineInt32(savedGroup, "b", 8);
  LcUOption::DefineSet(saved, "grp", savedGroup);
  savedGroup->SetState(0, 0);
  LcUOption::SetSavedOptions(saved);
  // A saved member the set does not define is not added.
  LcUOption::DefineInt32(savedGroup, "gone", 9);
  LcUExOptionSet* group = new LcUExOptionSet;
  LcUOption::DefineInt32(group, "a", 1);
  LcUOption::DefineInt32(group, "b", 2);
  ASSERT_TRUE(LcUOption::DefineSet("grp", group));
  EXPECT_EQ(Shape(LcUOption::GetSet("grp")), "a=7,b=8");
  EXPECT_FALSE(IsDefault("grp.a"));
  EXPECT_TRUE(IsDefault("grp.b"));
  // Only the member marked as default moved the default.
  EXPECT_EQ(Shape(LcUOption::GetSet(LcUOption::GetDefaultRoot(), "grp")), "a=1,b=8");
}
}  // namespace
}  // namespace OptionTesting
