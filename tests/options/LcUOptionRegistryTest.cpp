#include "OptionTesting.h"
#include "RegistrySandbox.h"
#include "environment/LcURegistry.h"
#include "environment/LcUSysRegistry.h"
#include "serial/LcUName.h"

namespace OptionTesting {
namespace {
using EnvironmentTesting::RegistrySandbox;
using EnvironmentTesting::Wide;
constexpr int kUser = LcUSysRegistry::eHIVE_CURRENT_USER;
constexpr uint32_t D = LcUOptionSet::eDEFAULT;

// This version's location first, then an older one.
class Locations : public LcURegistryLocationProvider {
public:
  explicit Locations(const RegistrySandbox& sandbox) : current(sandbox.Key(u"v6")), older(sandbox.Key(u"v5")) {}
  int32_t GetLocationCount() const override { return 2; }
  const char16_t* GetLocation(int32_t index) const override { return index ? older.Get() : current.Get(); }
  LcUString current;
  LcUString older;
};

class LcUOptionRegistryTest : public OptionTest {
protected:
  void SetUp() override {
    OptionTest::SetUp();
    ASSERT_TRUE(LcUSysFile::MakeTempFolder(folder));
    sandbox = new RegistrySandbox(folder);
    locations = new Locations(*sandbox);
    previous = LcURegistry::SetRegistryLocationProvider(locations);
  }
  void TearDown() override {
    for (LcUOptionSet* set : held) set->Release();
    LcURegistry::SetRegistryLocationProvider(previous);
    LcUSysRegistry::DeleteKey(kUser, sandbox->Base().Get(), true);
    delete locations;
    delete sandbox;
    LcUSysFile::Remove(folder.Get(), true, true);
    OptionTest::TearDown();
  }
  LcUExOptionSet* Hold(LcUExOptionSet* set) {
    set->AddRef();
    held.push_back(set);
    return set;
  }
  LcUExOptionSet* Read(const char16_t* key, uint32_t mode) { return Hold(LcUOption::ReadFromRegistry(key, mode)); }
  // The text stored at this version's location, or "<none>".
  std::string Stored(const char16_t* key, const char16_t* name, const LcUString* root = nullptr) {
    LcUString path;
    LcUSysRegistry::JoinKey((root ? *root : locations->current).Get(), key, nullptr, nullptr, path);
    LcUString text;
    return LcUSysRegistry::GetTextValue(kUser, path.Get(), name, text) ? Narrow(text) : "<none>";
  }
  int32_t Mark(const char16_t* key) {
    LcUString path;
    LcUSysRegistry::JoinKey(locations->current.Get(), key, nullptr, nullptr, path);
    int32_t mark = -1;
    LcUSysRegistry::GetInt32Value(kUser, path.Get(), nullptr, mark);
    return mark;
  }
  void Put(const LcUString& root, const char16_t* key, const char16_t* name, const char16_t* text) {
    LcUString path;
    LcUSysRegistry::JoinKey(root.Get(), key, nullptr, nullptr, path);
    ASSERT_TRUE(LcUSysRegistry::SetTextValue(kUser, path.Get(), name, text));
  }
  LcUExOptionSet* Array(std::initializer_list<int32_t> values) {
    LcUExOptionSet* set = new LcUExOptionSet(LcUOptionSet::eARRAY);
    for (int32_t value : values) LcUOption::DefineInt32(set, std::to_string(set->GetCount()).c_str(), value);
    return set;
  }

  LcUString folder;
  RegistrySandbox* sandbox = nullptr;
  Locations* locations = nullptr;
  LcURegistryLocationProvider* previous = nullptr;
  std::vector<LcUOptionSet*> held;
};

// The eight families as live options, changed from their defaults.
void DefineFamilies(bool changed) {
  LcUName* name = new LcUName("fam_name", changed ? u"Changed" : u"Initial");
  LcUOption::DefineFloat("fam.float", 1.5);
  LcUOption::DefineInt32("fam.int32", -7);
  LcUOption::DefineBoolean("fam.boolean", false);
  LcUOption::DefineWideString("fam.wide", u"caf\u00e9");
  LcUOption::DefineTime("fam.time", 1700000000);
  LcUOption::DefineLinearFloat("fam.linear", 0.25);
  LcUOption::DefineAngularFloat("fam.angular", 3.0);
  LcUOption::DefineName("fam.name", changed ? nullptr : name);
  name->Release();
  if (!changed) return;
  LcUName* other = new LcUName("fam_other", u"Other");
  LcUOption::SetFloat("fam.float", -2.75);
  LcUOption::SetInt32("fam.int32", 123456);
  LcUOption::SetBoolean("fam.boolean", true);
  LcUOption::SetWideString("fam.wide", u"na\u00efve \u4e2d");
  LcUOption::SetTime("fam.time", 1800000001);
  LcUOption::SetLinearFloat("fam.linear", 12.5);
  LcUOption::SetAngularFloat("fam.angular", -0.5);
  LcUOption::SetName("fam.name", other);
  other->Release();
}

TEST_F(LcUOptionRegistryTest, EachFamilyHasItsRegistryText) {
  DefineFamilies(true);
  ASSERT_TRUE(LcUOption::WriteToRegistry(LcUOption::GetSet("fam"), u"Options", 0));
  const struct {
    const char16_t* name;
    const char* text;
  } cases[] = {{u"float", "1 -2.7500000000000000000"},
               {u"int32", "2 123456"},
               {u"boolean", "3 1"},
               {u"wide", "4na\u00efve \u4e2d"},
               {u"time", "5 2027/01/15 08:00:01 GMT"},
               {u"linear", "6 12.5000000000000000000"},
               {u"angular", "7 -0.5000000000000000000"},
               {u"name", "8 9:fam_otherOther"}};
  for (const auto& c : cases) EXPECT_EQ(Stored(u"Options\\fam", c.name), c.text) << Narrow(LcUString(c.name));
  // A plain set's key carries 0 as its default value.
  EXPECT_EQ(Mark(u"Options\\fam"), 0);
}

TEST_F(LcUOptionRegistryTest, ValuesRoundTripThroughSavedOptions) {
  DefineFamilies(true);
  ASSERT_TRUE(LcUOption::WriteToRegistry(LcUOption::GetPresentRoot(), u"Options", 0));
  LcUExOptionSet* written = Hold(LcUOption::CopyFiltered(LcUOption::GetPresentRoot(), 0));
  LcUOption::Terminate();
  LcUOption::Initialize();
  DefineFamilies(false);
  LcUOption::SetSavedOptions(Read(u"Options", 0));
  EXPECT_TRUE(LcUOption::Equal(LcUOption::GetPresentRoot(), written)) << Shape(LcUOption::GetPresentRoot());
  EXPECT_FALSE(IsDefault("fam.int32"));
  EXPECT_TRUE(TakeReports().empty());
}

TEST_F(LcUOptionRegistryTest, DefaultsBecomeDeletionMarkersOrAreLeftOut) {
  ASSERT_TRUE(LcUOption::DefineInt32("m.kept", 1));
  ASSERT_TRUE(LcUOption::DefineInt32("m.changed", 1));
  ASSERT_TRUE(LcUOption::SetInt32("m.changed", 2));
  LcUOptionSet* m = LcUOption::GetSet("m");
  ASSERT_TRUE(LcUOption::WriteKeys(m, u"Deleted", LcUOption::eWRITE_DEFAULTS_AS_DELETIONS));
  EXPECT_EQ(Stored(u"Deleted", u"kept"), "0");
  EXPECT_EQ(Stored(u"Deleted", u"changed"), "2 2");
  EXPECT_EQ(Shape(Read(u"Deleted", 1)), "changed=2");
  ASSERT_TRUE(LcUOption::WriteKeys(m, u"Left", LcUOption::eLEAVE_OUT_DEFAULTS));
  EXPECT_EQ(Stored(u"Left", u"kept"), "<none>");
  ASSERT_TRUE(LcUOption::WriteKeys(m, u"All", 0));
  EXPECT_EQ(Stored(u"All", u"kept"), "2 1");
}

TEST_F(LcUOptionRegistryTest, NestedSetsAreWrittenWithDefaultsAsDeletionsWhateverTheMode) {
  ASSERT_TRUE(LcUOption::DefineInt32("n.inner.kept", 1));
  ASSERT_TRUE(LcUOption::WriteKeys(LcUOption::GetSet("n"), u"Nested", 0));
  EXPECT_EQ(Stored(u"Nested\\inner", u"kept"), "0");
}

TEST_F(LcUOptionRegistryTest, ArraysAreRewrittenWhole) {
  LcUExOptionSet* holder = Hold(new LcUExOptionSet);
  LcUOption::DefineSet(holder, "list", Array({1, 2, 3}));
  holder->SetState(0, 0);
  ASSERT_TRUE(LcUOption::WriteKeys(holder, u"A", 0));
  EXPECT_EQ(Mark(u"A\\list"), 1);
  EXPECT_EQ(Stored(u"A\\list", u"2"), "2 3");
  LcUExOptionSet* shorter = Hold(new LcUExOptionSet);
  LcUOption::DefineSet(shorter, "list", Array({9}));
  shorter->SetState(0, 0);
  ASSERT_TRUE(LcUOption::WriteKeys(shorter, u"A", 0));
  EXPECT_EQ(Stored(u"A\\list", u"2"), "<none>");
  LcUExOptionSet* read = Read(u"A", 0);
  EXPECT_EQ(Shape(read), "list{0=9}");
  EXPECT_TRUE(LcUOption::GetSet(read, "list")->IsArray());
}

TEST_F(LcUOptionRegistryTest, AnEmptiedArrayKeepsItsMarker) {
  LcUExOptionSet* holder = Hold(new LcUExOptionSet);
  LcUOption::DefineSet(holder, "list", Array({1, 2}));
  ASSERT_TRUE(LcUOption::WriteKeys(holder, u"E", LcUOption::eWRITE_DEFAULTS_AS_DELETIONS));
  EXPECT_EQ(Mark(u"E\\list"), 1);
  EXPECT_EQ(Stored(u"E\\list", u"0"), "0");
  EXPECT_EQ(Stored(u"E\\list", u"1"), "<none>");
  // At the top it reads as an array of one empty element; nested, dropped.
  LcUExOptionSet* top = Read(u"E\\list", 0);
  EXPECT_TRUE(top->IsArray());
  ASSERT_EQ(top->GetCount(), 1);
  LcUData value;
  EXPECT_EQ(top->GetValue(0, &value), nullptr);
  EXPECT_TRUE(value.IsEmpty());
  EXPECT_EQ(Shape(Read(u"E", 0)), "list{0=}");
  EXPECT_EQ(Shape(Read(u"E", 1)), "");
}

TEST_F(LcUOptionRegistryTest, ArrayElementsGoByIndexAndBadNamesAreLogged) {
  LcUString& root = locations->current;
  Put(root, u"B", u"2", u"2 20");
  Put(root, u"B", u"0", u"2 0");
  Put(root, u"B", u"abc", u"2 5");
  Put(root, u"B", u"100000", u"2 6");
  LcUString key;
  LcUSysRegistry::JoinKey(root.Get(), u"B", nullptr, nullptr, key);
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, key.Get(), nullptr, 1));
  LcUExOptionSet* read = Read(u"B", 0);
  EXPECT_TRUE(read->IsArray());
  ASSERT_EQ(read->GetCount(), 2);
  EXPECT_EQ(LcUOption::GetInt32(read, "0"), 0);
  EXPECT_EQ(LcUOption::GetInt32(read, "2"), 20);
  std::string log = LogText();
  EXPECT_NE(log.find("LcUOption: Ignoring bad option name in registry: abc\n"), std::string::npos);
  EXPECT_NE(log.find("LcUOption: Ignoring bad option name in registry: 100000\n"), std::string::npos);
}

TEST_F(LcUOptionRegistryTest, OlderLocationsAreInheritedAndCopiedForward) {
  Put(locations->older, u"Old", u"size", u"2 42");
  EXPECT_EQ(Stored(u"Old", u"size"), "<none>");
  EXPECT_EQ(Shape(Read(u"Old", 0)), "size=42");
  EXPECT_EQ(Stored(u"Old", u"size"), "2 42");
  // An array comes from the first location that has it.
  LcUString newer;
  LcUSysRegistry::JoinKey(locations->current.Get(), u"Arr", nullptr, nullptr, newer);
  LcUString older;
  LcUSysRegistry::JoinKey(locations->older.Get(), u"Arr", nullptr, nullptr, older);
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, newer.Get(), nullptr, 1));
  ASSERT_TRUE(LcUSysRegistry::SetInt32Value(kUser, older.Get(), nullptr, 1));
  Put(locations->current, u"Arr", u"0", u"2 1");
  Put(locations->older, u"Arr", u"0", u"2 7");
  Put(locations->older, u"Arr", u"1", u"2 8");
  EXPECT_EQ(Shape(Read(u"Arr", 0)), "0=1");
  // Nothing there: an empty set, no report.
  EXPECT_EQ(Read(u"Nowhere\\AtAll", 0)->GetCount(), 0);
  EXPECT_TRUE(TakeReports().empty());
}

TEST_F(LcUOptionRegistryTest, TransientSetsAreNotWritten) {
  ASSERT_TRUE(LcUOption::DefineInt32("t.session.x", 1));
  ASSERT_TRUE(LcUOption::SetInt32("t.session.x", 2));
  ASSERT_TRUE(LcUOption::SetPathFlags("t.session", LcUOptionSet::eTRANSIENT));
  ASSERT_TRUE(LcUOption::DefineInt32("t.kept", 1));
  ASSERT_TRUE(LcUOption::SetInt32("t.kept", 3));
  ASSERT_TRUE(LcUOption::WriteToRegistry(LcUOption::GetSet("t"), u"Tr", 0));
  EXPECT_EQ(Shape(Read(u"Tr\\t", 0)), "kept=3");
  (void)D;
}
}  // namespace
}  // namespace OptionTesting
