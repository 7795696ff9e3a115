#include "OptionTesting.h"
#include "options/LcUOptionLock.h"

namespace OptionTesting {
namespace {
class LcUOptionPathTest : public OptionTest {};

TEST_F(LcUOptionPathTest, LookUpIsExactAndMalformedPathsNeverMatch) {
  ASSERT_TRUE(LcUOption::DefineInt32("view.grid.size", 10));
  ASSERT_TRUE(LcUOption::DefineInt32("view.grid.sizes", 11));
  ASSERT_TRUE(LcUOption::DefineBoolean("view.visible", true));
  const struct {
    const char* path;
    bool found;
  } cases[] = {{"view.grid.size", true}, {"view.grid.sizes", true}, {"view.visible", true},
               {"View.grid.size", false}, {"view.grid.siz", false}, {"view.grid", true},
               {".view.grid.size", false}, {"view..grid.size", false}, {"view.grid.size.", false},
               {"view.grid.", false}, {"", false}, {"view.visible.x", false}};
  for (const auto& c : cases) {
    int32_t index = -1;
    LcUOption::FindOption(LcUOption::GetPresentRoot(), c.path, index);
    EXPECT_EQ(index >= 0, c.found) << c.path;
  }
  EXPECT_EQ(LcUOption::GetSet(""), LcUOption::GetPresentRoot());
  EXPECT_EQ(LcUOption::GetSet("view.grid"), LcUOption::GetSet(LcUOption::GetSet("view"), "grid"));
  EXPECT_EQ(LcUOption::GetSet("view.visible"), nullptr);
  EXPECT_TRUE(TakeReports().empty());
}

TEST_F(LcUOptionPathTest, MalformedOrTakenDefinitionsReportAndChangeNothing) {
  ASSERT_TRUE(LcUOption::DefineInt32("a", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("s.b", 2));
  std::string before = Shape(LcUOption::GetPresentRoot());
  for (const char* path : {"a.b", "a", "s.b", ".x", "x..y", "x.", "s..c", "", "s.b.c"}) {
    EXPECT_FALSE(LcUOption::DefineFloat(path, 5.0)) << path;
    EXPECT_EQ(TakeReports(), std::vector<std::string>{std::string("0:Option malformed or already defined: ") + path})
        << path;
  }
  EXPECT_EQ(Shape(LcUOption::GetPresentRoot()), before);
  EXPECT_EQ(Shape(LcUOption::GetDefaultRoot()), before);
  EXPECT_EQ(LcUOption::GetInt32("a"), 1);
}

TEST_F(LcUOptionPathTest, ExplicitSetFormsUseTheirOwnTexts) {
  LcUExOptionSet* set = new LcUExOptionSet;
  set->AddRef();
  EXPECT_TRUE(LcUOption::DefineInt32(set, "p.q", 3));
  EXPECT_FALSE(LcUOption::DefineInt32(set, "p.q", 4));
  // A set the tree refuses is released as the tree would have.
  EXPECT_FALSE(LcUOption::DefineSet(set, "p..r", new LcUExOptionSet));
  EXPECT_EQ(TakeReports(), (std::vector<std::string>{"0:LcUExOptionSet::Define: Option malformed or already defined: p.q",
                                                     "0:LcUExOptionSet::DefineSet: Option malformed or already defined: p..r"}));
  EXPECT_EQ(Shape(set), "p{q=3}");
  EXPECT_EQ(Shape(LcUOption::GetDefaultRoot()), "");
  set->Release();
}

TEST_F(LcUOptionPathTest, SplitPathTakesTheLastComponent) {
  const struct {
    const char* path;
    const char* last;
    const char* parent;
  } cases[] = {{"a.b.c", "c", "a.b"}, {"a", "a", ""}, {"a.", "", "a"}, {"", "", ""}};
  for (const auto& c : cases) {
    LcUStringA last;
    LcUStringA parent;
    LcUOption::SplitPath(c.path, last, parent);
    EXPECT_STREQ(last.Get(), c.last) << c.path;
    EXPECT_STREQ(parent.Get(), c.parent) << c.path;
  }
}

TEST_F(LcUOptionPathTest, PathFlagsMakeSetsInBothTreesButFlagThePresentOnly) {
  ASSERT_TRUE(LcUOption::SetPathFlags("list.items", LcUOptionSet::eARRAY));
  LcUOptionSet* live = LcUOption::GetSet("list.items");
  LcUOptionSet* initial = LcUOption::GetSet(LcUOption::GetDefaultRoot(), "list.items");
  ASSERT_NE(live, nullptr);
  ASSERT_NE(initial, nullptr);
  EXPECT_EQ(live->GetFlags(), uint32_t(LcUOptionSet::eARRAY));
  EXPECT_EQ(initial->GetFlags(), 0u);
  EXPECT_EQ(live->GetCount(), 0);
  // Flags add up; a path through a leaf is refused.
  ASSERT_TRUE(LcUOption::SetPathFlags("list.items", LcUOptionSet::eTRANSIENT));
  EXPECT_EQ(live->GetFlags(), uint32_t(LcUOptionSet::eARRAY | LcUOptionSet::eTRANSIENT));
  ASSERT_TRUE(LcUOption::DefineInt32("leaf", 1));
  EXPECT_FALSE(LcUOption::SetPathFlags("leaf", 1));
  EXPECT_FALSE(LcUOption::SetPathFlags("a..b", 1));
  EXPECT_EQ(TakeReports(), (std::vector<std::string>{"0:Path to set malformed: leaf", "0:Path to set malformed: a..b"}));
}

TEST_F(LcUOptionPathTest, CompoundFlagPassesToSetsMadeBelowOnlyWhenInherited) {
  ASSERT_TRUE(LcUOption::SetPathFlags("c", LcUOptionSet::eCOMPOUND | LcUOptionSet::eINHERIT_COMPOUND));
  ASSERT_TRUE(LcUOption::SetPathFlags("p", LcUOptionSet::eCOMPOUND));
  ASSERT_TRUE(LcUOption::DefineInt32("c.inner.x", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("p.inner.x", 1));
  EXPECT_EQ(LcUOption::GetSet("c.inner")->GetFlags(), uint32_t(LcUOptionSet::eCOMPOUND));
  EXPECT_EQ(LcUOption::GetSet("p.inner")->GetFlags(), 0u);
}

TEST_F(LcUOptionPathTest, SetClassNamesAnExistingSet) {
  ASSERT_TRUE(LcUOption::DefineInt32("general.localcache.max_size", 1024));
  EXPECT_TRUE(LcUOption::SetSetClass("general.localcache", "option_GENERAL_LOCALCACHE"));
  EXPECT_STREQ(LcUOption::GetSet("general.localcache")->GetSetClass(), "option_GENERAL_LOCALCACHE");
  EXPECT_FALSE(LcUOption::SetSetClass("general.localcache.max_size", "x"));
  EXPECT_FALSE(LcUOption::SetSetClass("nowhere", "x"));
}

TEST_F(LcUOptionPathTest, ParentsAndPathsFollowTheTree) {
  ASSERT_TRUE(LcUOption::DefineInt32("a.b.c", 1));
  LcUOptionLock lock;
  LcUOptionSet* b = LcUOption::GetSet("a.b");
  LcUStringA path;
  b->GetPath(path);
  EXPECT_STREQ(path.Get(), "a.b");
  EXPECT_EQ(b->parent, LcUOption::GetSet("a"));
  EXPECT_EQ(LcUOption::GetSet("a")->parent, LcUOption::GetPresentRoot());
}
}  // namespace
}  // namespace OptionTesting
