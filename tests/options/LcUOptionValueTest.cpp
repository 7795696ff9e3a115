#include "OptionTesting.h"
#include "options/LcUOptionLock.h"
#include "serial/LcUName.h"

namespace OptionTesting {
namespace {
class LcUOptionValueTest : public OptionTest {
protected:
  void SetUp() override {
    OptionTest::SetUp();
    LcUName* name = new LcUName("n", u"N");
    ASSERT_TRUE(LcUOption::DefineFloat("t.float", 1.5));
    ASSERT_TRUE(LcUOption::DefineInt32("t.int32", 7));
    ASSERT_TRUE(LcUOption::DefineBoolean("t.boolean", true));
    ASSERT_TRUE(LcUOption::DefineWideString("t.wide", u"w"));
    ASSERT_TRUE(LcUOption::DefineTime("t.time", 1700000000));
    ASSERT_TRUE(LcUOption::DefineLinearFloat("t.linear", 2.5));
    ASSERT_TRUE(LcUOption::DefineAngularFloat("t.angular", 0.5));
    ASSERT_TRUE(LcUOption::DefineName("t.name", name));
    name->Release();
  }
};

// Each family read on each option: only its own kind answers.
TEST_F(LcUOptionValueTest, ReadsAreTypedAndReportTheirFamily) {
  const char* const paths[] = {"t.float", "t.int32", "t.boolean", "t.wide", "t.time", "t.linear", "t.angular", "t.name"};
  const struct {
    const char* family;
    bool (*read)(const char* path);
  } families[] = {
      {"Float", [](const char* p) { double v; return LcUOption::TryGetFloat(p, v) && (LcUOption::GetFloat(p), true); }},
      {"Int32", [](const char* p) { int32_t v; return LcUOption::TryGetInt32(p, v) && (LcUOption::GetInt32(p), true); }},
      {"Boolean", [](const char* p) { bool v; return LcUOption::TryGetBoolean(p, v) && (LcUOption::GetBoolean(p), true); }},
      {"WideString", [](const char* p) { LcUString v; return LcUOption::TryGetWideString(p, v) && LcUOption::GetWideString(p, v); }},
      {"Time", [](const char* p) { int64_t v; return LcUOption::TryGetTime(p, v) && (LcUOption::GetTime(p), true); }},
      {"LinearFloat", [](const char* p) { double v; return LcUOption::TryGetLinearFloat(p, v) && (LcUOption::GetLinearFloat(p), true); }},
      {"AngularFloat", [](const char* p) { double v; return LcUOption::TryGetAngularFloat(p, v) && (LcUOption::GetAngularFloat(p), true); }},
      {"Name", [](const char* p) {
         LcUName* v = nullptr;
         bool found = LcUOption::TryGetName(p, v);
         if (v) v->Release();
         return found;
       }},
  };
  for (size_t f = 0; f < 8; ++f)
    for (size_t p = 0; p < 8; ++p) {
      TakeReports();
      EXPECT_EQ(families[f].read(paths[p]), f == p) << families[f].family << " " << paths[p];
      // Try forms are silent; a match reads silently through the reporting form too.
      EXPECT_TRUE(TakeReports().empty()) << families[f].family << " " << paths[p];
    }
  EXPECT_EQ(LcUOption::GetBoolean("t.int32"), false);
  EXPECT_EQ(LcUOption::GetFloat("t.linear"), 0.0);
  EXPECT_EQ(LcUOption::GetInt32("t.missing"), 0);
  LcUString text(u"stale");
  EXPECT_FALSE(LcUOption::GetWideString("t.float", text));
  EXPECT_TRUE(text.IsEmpty() || text.IsNull());
  LcUData data;
  EXPECT_FALSE(LcUOption::GetData("t", data));
  EXPECT_EQ(TakeReports(), (std::vector<std::string>{"0:Can't get Boolean option t.int32", "0:Can't get Float option t.linear",
                                                     "0:Can't get Int32 option t.missing",
                                                     "0:Can't get WideString option t.float", "0:Can't get Data option t"}));
}

TEST_F(LcUOptionValueTest, ValuesReadBackAsDefined) {
  EXPECT_EQ(LcUOption::GetFloat("t.float"), 1.5);
  EXPECT_EQ(LcUOption::GetInt32("t.int32"), 7);
  EXPECT_TRUE(LcUOption::GetBoolean("t.boolean"));
  EXPECT_EQ(LcUOption::GetTime("t.time"), 1700000000);
  EXPECT_EQ(LcUOption::GetLinearFloat("t.linear"), 2.5);
  EXPECT_EQ(LcUOption::GetAngularFloat("t.angular"), 0.5);
  LcUString wide;
  ASSERT_TRUE(LcUOption::GetWideString("t.wide", wide));
  EXPECT_EQ(Narrow(wide), "w");
  LcUName* name = nullptr;
  ASSERT_TRUE(LcUOption::GetName("t.name", name));
  EXPECT_STREQ(name->GetInternalName(), "n");
  name->Release();
  LcUData data;
  ASSERT_TRUE(LcUOption::GetData("t.linear", data));
  EXPECT_EQ(data.GetTag(), LcUData::eLINEAR);
}

TEST_F(LcUOptionValueTest, AssignmentKeepsTheKindAndTracksTheDefault) {
  LcUOptionSet* t = LcUOption::GetSet("t");
  LcUOptionSet* root = LcUOption::GetPresentRoot();
  int32_t setCount = t->changeCount;
  int32_t rootCount = root->changeCount;
  EXPECT_EQ(State("t.int32"), uint32_t(LcUOptionSet::eDEFAULT));
  // Equal value: still default, no change counted.
  EXPECT_TRUE(LcUOption::SetInt32("t.int32", 7));
  EXPECT_TRUE(IsDefault("t.int32"));
  EXPECT_EQ(t->changeCount, setCount);
  // Another kind: refused, nothing changes.
  EXPECT_FALSE(LcUOption::SetFloat("t.int32", 8.0));
  EXPECT_FALSE(LcUOption::SetLinearFloat("t.float", 8.0));
  EXPECT_FALSE(LcUOption::SetInt32("t.missing", 8));
  EXPECT_FALSE(LcUOption::SetInt32("t", 8));
  EXPECT_EQ(LcUOption::GetInt32("t.int32"), 7);
  EXPECT_EQ(t->changeCount, setCount);
  // A new value: no longer default, counted once here and above.
  EXPECT_TRUE(LcUOption::SetInt32("t.int32", 8));
  EXPECT_FALSE(IsDefault("t.int32"));
  EXPECT_EQ(t->changeCount, setCount + 1);
  EXPECT_EQ(root->changeCount, rootCount + 1);
  // The default's value again is not the default.
  EXPECT_TRUE(LcUOption::SetInt32("t.int32", 7));
  EXPECT_FALSE(IsDefault("t.int32"));
  EXPECT_EQ(t->changeCount, setCount + 2);
  // The default tree holds the default throughout.
  EXPECT_EQ(LcUOption::GetInt32(LcUOption::GetDefaultRoot(), "t.int32"), 7);
  LcUOption::ResetToDefaults("t.int32");
  EXPECT_TRUE(IsDefault("t.int32"));
}

TEST_F(LcUOptionValueTest, ResetRestoresValuesAndStateOfAWholeSet) {
  ASSERT_TRUE(LcUOption::SetFloat("t.float", 9.0));
  ASSERT_TRUE(LcUOption::SetWideString("t.wide", u"other"));
  LcUOption::ResetToDefaults("t");
  EXPECT_EQ(LcUOption::GetFloat("t.float"), 1.5);
  EXPECT_TRUE(IsDefault("t.float"));
  EXPECT_TRUE(IsDefault("t.wide"));
  EXPECT_EQ(Shape(LcUOption::GetSet("t")), Shape(LcUOption::GetSet(LcUOption::GetDefaultRoot(), "t")));
}

TEST_F(LcUOptionValueTest, ResetWithoutADefaultLogsAndChangesNothing) {
  LcUExOptionSet* set = new LcUExOptionSet;
  LcUOption::DefineInt32(set, "x", 1);
  ASSERT_TRUE(LcUOption::DefineSet("extra", set));
  // Grown in the present tree only.
  LcUExOptionSet* live = dynamic_cast<LcUExOptionSet*>(LcUOption::GetSet("extra"));
  LcUOption::DefineInt32(live, "only", 2);
  EXPECT_FALSE(LcUOption::HasDefaults("extra.only"));
  EXPECT_TRUE(LcUOption::HasDefaults("extra.x"));
  LcUOption::ResetToDefaults("extra.only");
  EXPECT_EQ(LcUOption::GetInt32("extra.only"), 2);
  EXPECT_NE(LogText().find("LcUOption::ResetToDefaults(extra.only) - no default set, should have been guarded with "
                           "LcUOption::HasDefaults\n"),
            std::string::npos);
}

TEST_F(LcUOptionValueTest, ResetThatFailsLogsTheStatusBehindTheOldText) {
  // A present leaf where the default tree has a set: the structures differ.
  LcUExOptionSet* set = new LcUExOptionSet;
  LcUOption::DefineInt32(set, "x", 1);
  ASSERT_TRUE(LcUOption::DefineSet("shape", set));
  LcUOptionLock lock;
  LcUExOptionSet* root = LcUOption::GetPresentRoot();
  LcUOptionRecord* leaf = root->GetRecord(root->Find("shape"))->Copy();
  leaf->SetValue(Int(3));
  root->ReplaceRecord(root->Find("shape"), leaf);
  LcUOption::ResetToDefaults("shape");
  EXPECT_NE(LogText().find("LcUOption::ResetToDefaults(shape) failed with status %d32\n"), std::string::npos);
}

TEST_F(LcUOptionValueTest, DefineAndGetReadsWhatTheTreeHolds) {
  EXPECT_EQ(LcUOption::DefineInt32AndGet("t.int32", 99), 7);
  EXPECT_EQ(TakeReports().size(), 1u);
  EXPECT_EQ(LcUOption::DefineInt32AndGet("u.int32", 99), 99);
  EXPECT_DOUBLE_EQ(LcUOption::DefineFloatAndGet("u.float", 0.25), 0.25);
  EXPECT_TRUE(LcUOption::DefineBooleanAndGet("u.flag", true));
}

TEST_F(LcUOptionValueTest, CompositesReadAndWriteAsOneValue) {
  const double rgb[3] = {0.1, 0.2, 0.3};
  const double xyz[3] = {1, 2, 3};
  const double xy[2] = {4, 5};
  ASSERT_TRUE(LcUOption::DefineColour(nullptr, "view.background", rgb, 1));
  ASSERT_TRUE(LcUOption::DefinePoint3(nullptr, "view.eye", xyz));
  ASSERT_TRUE(LcUOption::DefinePoint2(LcUOption::GetSet("view"), "corner", xy));
  LcUOptionLock lock;
  LcUOptionSet* view = LcUOption::GetSet("view");
  int32_t i = view->Find("background");
  EXPECT_STREQ(view->GetClass(i), "color");
  EXPECT_EQ(view->GetDefineFlags(i) & LcUOptionSet::eATOMIC, uint32_t(LcUOptionSet::eATOMIC));
  EXPECT_EQ(LcUOption::GetSet("view.background")->GetFlags(), uint32_t(LcUOptionSet::eCOMPOUND));
  EXPECT_STREQ(view->GetClass(view->Find("eye")), "point3d");
  EXPECT_STREQ(view->GetClass(view->Find("corner")), "point2d");
  double eye[3] = {};
  ASSERT_TRUE(LcUOption::GetPoint3("view.eye", eye));
  EXPECT_EQ(eye[2], 3);
  LcUData member;
  ASSERT_TRUE(LcUOption::GetData("view.eye.x", member));
  EXPECT_EQ(member.GetTag(), LcUData::eLINEAR);

  double colour[3] = {};
  ASSERT_TRUE(LcUOption::GetColour("view.background", colour));
  EXPECT_EQ(colour[2], 0.3);
  const double next[3] = {1, 1, 0.3};
  ASSERT_TRUE(LcUOption::SetColour("view.background", next));
  EXPECT_FALSE(IsDefault("view.background.red"));
  EXPECT_TRUE(IsDefault("view.background.blue"));
  LcUOption::ResetColourToDefaults("view.background");
  ASSERT_TRUE(LcUOption::GetColour("view.background", colour));
  EXPECT_EQ(colour[0], 0.1);
  EXPECT_TRUE(IsDefault("view.background.red"));
  double point[2] = {};
  ASSERT_TRUE(LcUOption::GetPoint2(view, "corner", point));
  EXPECT_EQ(point[1], 5);
  EXPECT_FALSE(LcUOption::GetPoint3("view.missing", point));
}
}  // namespace
}  // namespace OptionTesting
