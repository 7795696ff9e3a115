#include "OptionTesting.h"

namespace OptionTesting {
namespace {
constexpr uint32_t D = LcUOptionSet::eDEFAULT;
constexpr uint32_t M = LcUOptionSet::eMARKED;

// Free-standing sets built by hand, released at the end of each test.
class LcUOptionMergeTest : public OptionTest {
protected:
  void TearDown() override {
    for (LcUOptionSet* set : made) set->Release();
    OptionTest::TearDown();
  }
  LcUExOptionSet* Make(uint32_t flags = 0) {
    LcUExOptionSet* set = new LcUExOptionSet(flags);
    set->AddRef();
    made.push_back(set);
    return set;
  }
  // A set with one Int32 leaf "v".
  LcUExOptionSet* Leaf(int32_t value, uint32_t state) {
    LcUExOptionSet* set = Make();
    LcUOption::DefineInt32(set, "v", value);
    set->SetState(0, state);
    return set;
  }
  LcUExOptionSet* Array(std::initializer_list<int32_t> values) {
    LcUExOptionSet* set = Make(LcUOptionSet::eARRAY);
    for (int32_t value : values) LcUOption::DefineInt32(set, std::to_string(set->GetCount()).c_str(), value);
    return set;
  }
  std::vector<LcUOptionSet*> made;
};

TEST_F(LcUOptionMergeTest, ModeBitsDecideTheTargetState) {
  const struct {
    uint32_t mode;
    int32_t targetValue;
    uint32_t targetState;
    int32_t sourceValue;
    uint32_t sourceState;
    int32_t value;
    uint32_t state;
  } cases[] = {
      // No mode: the state is left alone.
      {0, 1, D, 2, 0, 2, D},
      {0, 1, M, 2, D, 2, M},
      // 1: source default makes it default; else a different value ends it.
      {1, 1, 0, 2, D, 2, D},
      {1, 1, D, 2, 0, 2, 0},
      {1, 1, D, 1, 0, 1, D},
      {1, 1, M, 2, 0, 2, M},
      // 2: the default bit copied.
      {2, 1, D, 1, 0, 1, 0},
      {2, 1, 0, 2, D, 2, D},
      // 4: the mark copied.
      {4, 1, M | D, 2, 0, 2, D},
      {4, 1, 0, 2, M, 2, M},
      // 6: both copied.
      {6, 1, M, 2, D, 2, D},
      // 8: a marked target is skipped.
      {8, 1, M, 2, D, 1, M},
      {8 | 2, 1, 0, 2, D, 2, D},
      // 16: an unmarked source is skipped.
      {16, 1, 0, 2, D, 1, 0},
      {16 | 2, 1, 0, 2, M | D, 2, D},
  };
  for (const auto& c : cases) {
    LcUExOptionSet* target = Leaf(c.targetValue, c.targetState);
    LcUExOptionSet* source = Leaf(c.sourceValue, c.sourceState);
    EXPECT_EQ(LcUOption::MergeOption(target, 0, source, 0, c.mode, false), 0);
    EXPECT_EQ(LcUOption::GetInt32(target, "v"), c.value) << "mode " << c.mode;
    EXPECT_EQ(target->GetState(0), c.state) << "mode " << c.mode << " from " << c.targetState;
  }
}

TEST_F(LcUOptionMergeTest, StatusBitsNameWhatCouldNotBeDone) {
  // 1: a value of another kind.
  LcUExOptionSet* target = Leaf(1, D);
  LcUExOptionSet* source = Make();
  LcUOption::DefineFloat(source, "v", 2.0);
  EXPECT_EQ(LcUOption::MergeOption(target, 0, source, 0, 5, false), LcUOption::eREFUSED);
  EXPECT_EQ(LcUOption::GetInt32(target, "v"), 1);
  EXPECT_EQ(target->GetState(0), D);
  // 32: leaf against set without restructuring; with it, the record is replaced.
  LcUExOptionSet* branch = Make();
  LcUOption::DefineSet(branch, "v", Array({1}));
  EXPECT_EQ(LcUOption::MergeOption(target, 0, branch, 0, 0, false), LcUOption::eSTRUCTURE);
  EXPECT_EQ(LcUOption::MergeOption(target, 0, branch, 0, 0, true), 0);
  EXPECT_EQ(Shape(target), "v{0=1}");
  EXPECT_EQ(LcUOption::GetSet(target, "v")->parent, target);
  // 8: an empty array cannot grow.
  LcUExOptionSet* empty = Make();
  LcUOption::DefineSet(empty, "v", Array({}));
  LcUExOptionSet* full = Make();
  LcUOption::DefineSet(full, "v", Array({4, 5}));
  EXPECT_EQ(LcUOption::MergeOption(empty, 0, full, 0, 0, false), LcUOption::eCANNOT_GROW);
  // 2 and 4 need a concrete set; none but the concrete exists, so a merge
  // that adds goes through.
  LcUExOptionSet* into = Leaf(1, D);
  LcUExOptionSet* extra = Make();
  LcUOption::DefineInt32(extra, "w", 9);
  LcUOption::DefineInt32(extra, "v", 3);
  LcUOption::DefineInt32(extra, "z", 8);
  EXPECT_EQ(LcUOption::MergeSet(into, extra, 0, false), 0);
  EXPECT_EQ(Shape(into), "v=3");
  EXPECT_EQ(LcUOption::MergeSet(into, extra, 0, true), 0);
  EXPECT_EQ(Shape(into), "w=9,v=3,z=8");
}

TEST_F(LcUOptionMergeTest, ArraysAreSizedToTheSourceAndMergedByElement) {
  LcUExOptionSet* target = Make();
  LcUOption::DefineSet(target, "a", Array({1, 2, 3}));
  LcUExOptionSet* shorter = Make();
  LcUOption::DefineSet(shorter, "a", Array({7}));
  EXPECT_EQ(LcUOption::MergeOption(target, 0, shorter, 0, 2, false), 0);
  EXPECT_EQ(Shape(target), "a{0=7}");
  LcUExOptionSet* longer = Make();
  LcUOption::DefineSet(longer, "a", Array({4, 5, 6}));
  longer->SetState(0, D);
  EXPECT_EQ(LcUOption::MergeOption(target, 0, longer, 0, 2, false), 0);
  EXPECT_EQ(Shape(target), "a{0=4,1=5,2=6}");
  // The modes decide the array's own bit, though resizing changed it.
  EXPECT_EQ(target->GetState(0) & D, D);
  // Elements take their state from the source's elements.
  EXPECT_EQ(LcUOption::GetSet(target, "a")->GetState(2), LcUOption::GetSet(longer, "a")->GetState(2));
}

TEST_F(LcUOptionMergeTest, InsertAndRemoveWorkOnArraysOnly) {
  LcUExOptionSet* array = Array({10, 20});
  EXPECT_TRUE(array->Insert(2));  // at the count: a copy of the last
  EXPECT_TRUE(array->Insert(0));
  EXPECT_FALSE(array->Insert(5));
  EXPECT_FALSE(array->Insert(-1));
  // The copy takes its index as name; the others keep theirs.
  EXPECT_EQ(Shape(array), "0=10,0=10,1=20,2=20");
  EXPECT_TRUE(array->Remove(1));
  EXPECT_FALSE(array->Remove(3));
  EXPECT_EQ(Shape(array), "0=10,1=20,2=20");
  for (int32_t i = 0; i < array->GetCount(); ++i) EXPECT_EQ(array->GetState(i) & D, 0u);
  EXPECT_FALSE(Array({})->Insert(0));
  LcUExOptionSet* plain = Leaf(1, D);
  EXPECT_FALSE(plain->Insert(0));
}

TEST_F(LcUOptionMergeTest, AChangedArrayStopsCountingAsDefault) {
  LcUExOptionSet* array = Array({1, 2});
  ASSERT_TRUE(LcUOption::DefineSet("list", array));
  EXPECT_TRUE(IsDefault("list"));
  int32_t count = LcUOption::GetPresentRoot()->changeCount;
  EXPECT_TRUE(LcUOption::SetInt32("list.1", 5));
  EXPECT_FALSE(IsDefault("list"));
  EXPECT_EQ(LcUOption::GetPresentRoot()->changeCount, count + 1);
  LcUOption::ResetToDefaults("list");
  EXPECT_TRUE(IsDefault("list"));
  EXPECT_EQ(LcUOption::GetInt32("list.1"), 2);
}

TEST_F(LcUOptionMergeTest, CopyFilteredKeepsWhatEachBitAsks) {
  LcUExOptionSet* set = Make();
  LcUOption::DefineInt32(set, "def", 1);
  LcUOption::DefineInt32(set, "changed", 2);
  LcUOption::DefineInt32(set, "marked", 3);
  LcUExOptionSet* plain = Make();
  LcUOption::DefineInt32(plain, "x", 1);
  LcUOption::DefineSet(set, "plain", plain);
  LcUExOptionSet* atomic = Make();
  LcUOption::DefineInt32(atomic, "x", 1);
  LcUOption::DefineSet(set, "atomic", atomic, 0, LcUOptionSet::eATOMIC);
  set->SetState(1, 0);
  set->SetState(2, D | M);
  const struct {
    uint32_t filter;
    const char* names;
  } cases[] = {{0, "def changed marked plain atomic"},
               {1, "def marked plain atomic"},
               {2, "changed"},
               {4, "marked"},
               {8, "def changed plain atomic"},
               {16, "plain"},
               {32, "def changed marked atomic"},
               {64, "atomic"},
               {128, "def changed marked plain"},
               {256, "def changed marked"},
               {512, "plain atomic"},
               {1 | 256, "def marked"}};
  for (const auto& c : cases) {
    LcUExOptionSet* copy = LcUOption::CopyFiltered(set, c.filter);
    copy->AddRef();
    std::string names;
    for (int32_t i = 0; i < copy->GetCount(); ++i) names += (i ? " " : "") + std::string(copy->GetName(i));
    EXPECT_EQ(names, c.names) << "filter " << c.filter;
    // Copies are deep.
    if (copy->Find("plain") >= 0) {
      EXPECT_NE(LcUOption::GetSet(copy, "plain"), plain);
    }
    copy->Release();
  }
}

TEST_F(LcUOptionMergeTest, EqualComparesShapeAndValues) {
  EXPECT_TRUE(LcUOption::Equal(Array({1, 2}), Array({1, 2})));
  EXPECT_FALSE(LcUOption::Equal(Array({1, 2}), Array({1, 3})));
  EXPECT_FALSE(LcUOption::Equal(Array({1, 2}), Array({1})));
  LcUExOptionSet* nested = Make();
  LcUOption::DefineSet(nested, "v", Array({1}));
  EXPECT_FALSE(LcUOption::Equal(nested, Leaf(1, D)));
  EXPECT_TRUE(LcUOption::Equal(nullptr, nullptr));
}

TEST_F(LcUOptionMergeTest, UndefineAndRedefineKeepBothTreesInStep) {
  ASSERT_TRUE(LcUOption::DefineInt32("g.a", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("g.b", 2));
  ASSERT_TRUE(LcUOption::DefineInt32("g.c", 3));
  LcUExOptionSet* first = Make();
  LcUOption::DefineInt32(first, "x", 1);
  ASSERT_TRUE(LcUOption::DefineSet("g.s", first));
  int32_t count = LcUOption::GetSet("g")->changeCount;
  ASSERT_TRUE(LcUOption::Undefine("g.b"));
  EXPECT_EQ(Shape(LcUOption::GetSet("g")), "a=1,c=3,s{x=1}");
  EXPECT_EQ(Shape(LcUOption::GetSet(LcUOption::GetDefaultRoot(), "g")), "a=1,c=3,s{x=1}");
  EXPECT_GT(LcUOption::GetSet("g")->changeCount, count);

  LcUExOptionSet* second = Make();
  LcUOption::DefineInt32(second, "y", 5);
  ASSERT_TRUE(LcUOption::Redefine("g.s", second));
  EXPECT_EQ(Shape(LcUOption::GetSet("g")), "a=1,c=3,s{y=5}");
  EXPECT_EQ(Shape(LcUOption::GetSet(LcUOption::GetDefaultRoot(), "g")), "a=1,c=3,s{y=5}");
  EXPECT_EQ(first->parent, nullptr);
  EXPECT_EQ(second->parent, LcUOption::GetSet("g"));
  EXPECT_NE(LcUOption::GetSet(LcUOption::GetDefaultRoot(), "g.s"), second);
  EXPECT_TRUE(IsDefault("g.s.y"));

  EXPECT_FALSE(LcUOption::Undefine("g.b"));
  EXPECT_FALSE(LcUOption::Redefine("g.zz", second));
  EXPECT_EQ(TakeReports(), (std::vector<std::string>{"0:Option malformed or not defined: g.b",
                                                     "0:Option malformed or not defined: g.zz"}));
  // Defined again after undefining: no report.
  ASSERT_TRUE(LcUOption::DefineInt32("g.b", 4));
  EXPECT_TRUE(TakeReports().empty());
}
}  // namespace
}  // namespace OptionTesting
