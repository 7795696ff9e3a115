#include "OptionTesting.h"
#include "environment/LcUResource.h"
#include "options/LcUOptionLock.h"
#include "serial/LcUName.h"
#include "serial/LcUXMLDOMStream.h"

namespace OptionTesting {
namespace {
class LcUOptionUserTextTest : public OptionTest {};

TEST_F(LcUOptionUserTextTest, UserNamesComeFromThePathOrThePlainName) {
  LcUResource::DefineString("lcuopt.ut.grid.size", u"Grid size");
  LcUResource::DefineString("lcuopt:plain", u"Plain");
  ASSERT_TRUE(LcUOption::DefineInt32("ut.grid.size", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("ut.grid.plain", 1, 0, LcUOptionSet::ePLAIN_TEXT_KEY));
  ASSERT_TRUE(LcUOption::DefineInt32("ut.grid.unknown", 1));
  LcUOptionLock lock;
  LcUOptionSet* grid = LcUOption::GetSet("ut.grid");
  EXPECT_EQ(Narrow(LcUString(grid->GetUserName(grid->Find("size")))), "Grid size");
  EXPECT_EQ(Narrow(LcUString(grid->GetUserName(grid->Find("plain")))), "Plain");
  EXPECT_EQ(grid->GetUserName(grid->Find("unknown")), nullptr);
}

TEST_F(LcUOptionUserTextTest, NamesEndingInAnIndexListTheirChoices) {
  LcUResource::DefineString("ut_shade:1", u"Flat");
  LcUResource::DefineString("ut_shade:2", u"Smooth");
  LcUResource::DefineString("ut_shade:3", u"Lines");
  LcUResource::DefineString("ut_shade:5", u"Beyond the gap");
  LcUName* shade = LcUName::MakeIndexedName("ut_shade", 2);
  LcUName* single = new LcUName("ut_single", u"Single");
  ASSERT_TRUE(LcUOption::DefineName("ut.shade", shade));
  ASSERT_TRUE(LcUOption::DefineName("ut.single", single));
  ASSERT_TRUE(LcUOption::DefineInt32("ut.number", 1));
  shade->Release();
  single->Release();
  LcUResource::DefineString("ut_mode:0", u"Off");
  LcUResource::DefineString("ut_mode:1", u"On");
  LcUName* mode = LcUName::MakeIndexedName("ut_mode", 0);
  ASSERT_TRUE(LcUOption::DefineName("ut.mode", mode));
  mode->Release();
  LcUOptionLock lock;
  LcUOptionSet* set = LcUOption::GetSet("ut");
  LcUVector<LcUName*> choices;
  // A list may start at 0.
  ASSERT_EQ(set->GetEnumValues(set->Find("mode"), choices), 2);
  for (int32_t i = 0; i < choices.Size(); ++i) choices[i]->Release();
  choices.Clear();
  ASSERT_EQ(set->GetEnumValues(set->Find("shade"), choices), 2);
  EXPECT_STREQ(choices[0]->GetInternalName(), "ut_shade:2");
  EXPECT_EQ(Narrow(LcUString(choices[1]->GetUserName())), "Lines");
  ASSERT_EQ(set->GetEnumValues(set->Find("single"), choices), 1);
  EXPECT_STREQ(choices[2]->GetInternalName(), "ut_single");
  EXPECT_EQ(set->GetEnumValues(set->Find("number"), choices), 0);
  for (int32_t i = 0; i < choices.Size(); ++i) choices[i]->Release();
}

TEST_F(LcUOptionUserTextTest, RelocaliseRefreshesNamesFromTheResources) {
  LcUResource::DefineString("ut_colour", u"Colour");
  LcUName* name = new LcUName("ut_colour", u"ignored");
  ASSERT_TRUE(LcUOption::DefineName("ut.colour", name));
  name->Release();
  LcUResource::DefineString("ut_colour", u"Farbe");
  LcUOption::Relocalise();
  LcUName* read = nullptr;
  ASSERT_TRUE(LcUOption::GetName("ut.colour", read));
  EXPECT_EQ(Narrow(LcUString(read->GetUserName())), "Farbe");
  read->Release();
}

TEST_F(LcUOptionUserTextTest, VisibilityFollowsLevelsAtomicSetsAndFlags) {
  const double rgb[3] = {0, 0, 0};
  ASSERT_TRUE(LcUOption::DefineInt32("vis.leaf", 1, 2));
  ASSERT_TRUE(LcUOption::DefineColour(nullptr, "vis.colour", rgb, 1));
  ASSERT_TRUE(LcUOption::DefineInt32("vis.deep.inner", 1, 3));
  ASSERT_TRUE(LcUOption::SetPathFlags("shown", LcUOptionSet::eALWAYS_VISIBLE));
  ASSERT_TRUE(LcUOption::SetPathFlags("list", LcUOptionSet::eARRAY));
  LcUOptionLock lock;
  LcUOptionSet* vis = LcUOption::GetSet("vis");
  const struct {
    int32_t level;
    bool options;
    bool children;
  } cases[] = {{0, false, false}, {1, true, false}, {2, true, false}, {3, true, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(vis->HasVisibleOptions(c.level), c.options) << c.level;
    EXPECT_EQ(vis->HasVisibleChildren(c.level), c.children) << c.level;
  }
  EXPECT_TRUE(LcUOption::GetSet("shown")->HasVisibleOptions(0));
  EXPECT_TRUE(LcUOption::GetSet("list")->HasVisibleOptions(0));
  EXPECT_FALSE(LcUOption::GetSet("list")->HasVisibleChildren(9));
}

TEST_F(LcUOptionUserTextTest, TheXMLComponentOwnsItsOptionAcrossRestarts) {
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(LcUXMLDOMStream::Initialize());
    bool validate = false;
    EXPECT_TRUE(LcUOption::TryGetBoolean("general.xml.validate", validate));
    EXPECT_TRUE(validate);
    LcUOptionLock lock;
    LcUOptionSet* xml = LcUOption::GetSet("general.xml");
    EXPECT_EQ(xml->GetLevel(xml->Find("validate")), 1);
    LcUXMLDOMStream::Terminate();
    EXPECT_FALSE(LcUOption::TryGetBoolean("general.xml.validate", validate));
  }
  EXPECT_TRUE(TakeReports().empty());
}
}  // namespace
}  // namespace OptionTesting
