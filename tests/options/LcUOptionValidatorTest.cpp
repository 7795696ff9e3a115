#include "OptionTesting.h"
#include "options/LcUOptCompositeValidator.h"
#include "options/LcUOptFloatRangeValidator.h"
#include "options/LcUOptInt32MinValidator.h"
#include "options/LcUOptInt32RangeValidator.h"
#include "options/LcUOptValueEnabler.h"
#include "options/LcUOptionLock.h"

namespace OptionTesting {
namespace {
class LcUOptionValidatorTest : public OptionTest {
protected:
  // Holds a count for the test's length.
  template <typename Validator>
  Validator* Keep(Validator* validator) {
    validator->AddRef();
    kept.push_back(validator);
    return validator;
  }
  void TearDown() override {
    for (LcUOptionValidator* validator : kept) validator->Release();
    OptionTest::TearDown();
  }
  std::vector<LcUOptionValidator*> kept;
};

TEST_F(LcUOptionValidatorTest, EachValidatorAnswersValidateRangeAndDisabled) {
  LcUOptionValidator* floatRange = Keep(new LcUOptFloatRangeValidator(-1.0, 2.0));
  LcUOptionValidator* intRange = Keep(new LcUOptInt32RangeValidator(1, 5));
  LcUOptionValidator* intMin = Keep(new LcUOptInt32MinValidator(1));
  LcUOptionValidator* base = Keep(new LcUOptionValidator);
  const struct {
    LcUOptionValidator* validator;
    LcUData value;
    bool valid;
  } cases[] = {{floatRange, Float(2.0), true},
               {floatRange, Float(-1.0, LcUData::eLINEAR), true},
               {floatRange, Float(0.5, LcUData::eANGLE), true},
               {floatRange, Float(0.5, LcUData::eAREA), true},
               {floatRange, Float(0.5, LcUData::eVOLUME), true},
               {floatRange, Float(2.0001), false},
               {floatRange, Float(-1.5), false},
               {floatRange, Int(1), false},
               {intRange, Int(1), true},
               {intRange, Int(5), true},
               {intRange, Int(6), false},
               {intRange, Int(0), false},
               {intRange, Float(3.0), false},
               {intMin, Int(1), true},
               {intMin, Int(2147483647), true},
               {intMin, Int(0), false},
               {intMin, Float(3.0), false},
               {base, Text(u"any"), true}};
  for (const auto& c : cases) {
    LcUString error;
    EXPECT_EQ(c.validator->Validate(nullptr, 0, c.value, &error), c.valid);
    EXPECT_FALSE(c.validator->IsDisabled(nullptr, 0, nullptr));
  }
  LcUData low;
  LcUData high;
  ASSERT_TRUE(floatRange->GetRange(nullptr, 0, &low, &high));
  EXPECT_EQ(low.GetTag(), LcUData::eFLOAT);
  EXPECT_EQ(high.GetFloat(), 2.0);
  ASSERT_TRUE(intRange->GetRange(nullptr, 0, &low, nullptr));
  EXPECT_EQ(low.GetTag(), LcUData::eINT32);
  EXPECT_EQ(low.GetInt32(), 1);
  EXPECT_FALSE(intMin->GetRange(nullptr, 0, &low, &high));
  EXPECT_TRUE(static_cast<LcUOptInt32MinValidator*>(intMin)->GetMin(nullptr, 0, nullptr));
  ASSERT_TRUE(static_cast<LcUOptInt32MinValidator*>(intMin)->GetMin(nullptr, 0, &low));
  EXPECT_EQ(low.GetInt32(), 1);
  EXPECT_FALSE(base->GetRange(nullptr, 0, &low, &high));
}

TEST_F(LcUOptionValidatorTest, AssignmentGoesThroughTheValidator) {
  ASSERT_TRUE(LcUOption::DefineInt32("v.n", 3, 0, 0, nullptr, new LcUOptInt32RangeValidator(1, 5)));
  EXPECT_FALSE(LcUOption::SetInt32("v.n", 9));
  EXPECT_EQ(LcUOption::GetInt32("v.n"), 3);
  EXPECT_TRUE(IsDefault("v.n"));
  EXPECT_TRUE(LcUOption::SetInt32("v.n", 5));
  LcUOptionLock lock;
  LcUOptionSet* set = LcUOption::GetSet("v");
  LcUData low;
  LcUData high;
  EXPECT_TRUE(set->GetRange(0, &low, &high));
  EXPECT_EQ(high.GetInt32(), 5);
}

TEST_F(LcUOptionValidatorTest, CompositesAskEveryMember) {
  LcUOptCompositeValidator* none = Keep(new LcUOptCompositeValidator);
  EXPECT_TRUE(none->Validate(nullptr, 0, Int(0), nullptr));
  EXPECT_FALSE(none->IsDisabled(nullptr, 0, nullptr));
  EXPECT_FALSE(none->GetRange(nullptr, 0, nullptr, nullptr));

  LcUOptInt32MinValidator* min = new LcUOptInt32MinValidator(2);
  LcUOptCompositeValidator* both = Keep(new LcUOptCompositeValidator(min, new LcUOptInt32RangeValidator(0, 10)));
  both->Add(nullptr);
  EXPECT_EQ(both->members.Size(), 2);
  EXPECT_EQ(min->refCount, 1);
  EXPECT_TRUE(both->Validate(nullptr, 0, Int(2), nullptr));
  EXPECT_FALSE(both->Validate(nullptr, 0, Int(1), nullptr));
  EXPECT_FALSE(both->Validate(nullptr, 0, Int(11), nullptr));
  // The range comes from the first member that has one.
  LcUData low;
  LcUData high;
  ASSERT_TRUE(both->GetRange(nullptr, 0, &low, &high));
  EXPECT_EQ(low.GetInt32(), 0);
  EXPECT_EQ(high.GetInt32(), 10);

  ASSERT_TRUE(LcUOption::DefineBoolean("e.on", false));
  LcUData on;
  on.SetBool(true);
  LcUOptCompositeValidator* greyed = Keep(new LcUOptCompositeValidator(new LcUOptValueEnabler(on, "e.on", 0), nullptr));
  EXPECT_TRUE(greyed->IsDisabled(nullptr, 0, nullptr));
  ASSERT_TRUE(LcUOption::SetBoolean("e.on", true));
  EXPECT_FALSE(greyed->IsDisabled(nullptr, 0, nullptr));
}

TEST_F(LcUOptionValidatorTest, ValueEnablersReadFromTheRootOrTheirSet) {
  LcUData wanted;
  wanted.SetInt32(2);
  ASSERT_TRUE(LcUOption::DefineInt32("mode", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("panel.mode", 2));
  ASSERT_TRUE(LcUOption::DefineInt32("panel.size", 5, 0, 0, nullptr, new LcUOptValueEnabler(wanted, "mode", 0)));
  ASSERT_TRUE(LcUOption::DefineInt32("panel.depth", 5, 0, 0, nullptr, new LcUOptValueEnabler(wanted, "mode", 1)));
  LcUOptionLock lock;
  LcUOptionSet* panel = LcUOption::GetSet("panel");
  EXPECT_TRUE(panel->IsDisabled(panel->Find("size"), nullptr));
  EXPECT_FALSE(panel->IsDisabled(panel->Find("depth"), nullptr));
  EXPECT_FALSE(panel->IsDisabled(panel->Find("mode"), nullptr));
  ASSERT_TRUE(LcUOption::SetInt32("mode", 2));
  EXPECT_FALSE(panel->IsDisabled(panel->Find("size"), nullptr));
  // Enablers never refuse a value.
  EXPECT_TRUE(LcUOption::SetInt32("panel.size", 6));
}

TEST_F(LcUOptionValidatorTest, ASharedValidatorOutlivesOneOfItsOptions) {
  LcUOptInt32MinValidator* shared = new LcUOptInt32MinValidator(1);
  ASSERT_TRUE(LcUOption::DefineInt32("c.max_size", 1024, 0, 0, nullptr, shared));
  ASSERT_TRUE(LcUOption::DefineInt32("c.min_inactive_files", 3, 0, 0, nullptr, shared));
  // Each option holds a count in each tree.
  EXPECT_EQ(shared->refCount, 4);
  ASSERT_TRUE(LcUOption::Undefine("c.max_size"));
  EXPECT_EQ(shared->refCount, 2);
  EXPECT_FALSE(LcUOption::SetInt32("c.min_inactive_files", 0));
  EXPECT_TRUE(LcUOption::SetInt32("c.min_inactive_files", 2));
}
}  // namespace
}  // namespace OptionTesting
