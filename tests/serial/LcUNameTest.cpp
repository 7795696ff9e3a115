#include <gtest/gtest.h>

#include <string>

#include "environment/LcUResource.h"
#include "foundation/LcUChecksum.h"
#include "serial/LcUName.h"
#include "serial/LcUNameTable.h"

namespace {
class Names : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    LcUName::Initialize();
    LcUResource::DefineString("abc", u"Known text");
    LcUResource::DefineString("LcOaNode", u"Node");
    LcUResource::DefineString("color:1", u"Green");
  }
  static void TearDownTestSuite() { LcUName::Terminate(); }
};

std::u16string User(const LcUName* name) {
  return name->GetUserName() ? name->GetUserName() : u"<null>";
}

TEST_F(Names, TheResourceTextWins) {
  struct Row {
    const char* internal;
    const char16_t* user;
    const char16_t* expected;
  } rows[] = {{"abc", u"x", u"Known text"}, {"unknown", u"x", u"x"}, {"abc", nullptr, u"Known text"},
              {"unknown", nullptr, u"unknown"}, {nullptr, u"plain", u"plain"}};
  for (const Row& row : rows) {
    LcUName* name = new LcUName(row.internal, row.user);
    EXPECT_EQ(std::u16string(row.expected), User(name)) << (row.internal ? row.internal : "null");
    name->Release();
  }
  LcUName* indexed = new LcUName("color", 1, u"ignored");
  EXPECT_STREQ("color:1", indexed->GetInternalName());
  EXPECT_EQ(u"Green", User(indexed));
  indexed->Release();
}

TEST_F(Names, SettingAndRelocalising) {
  LcUName* known = new LcUName("abc", u"x");
  known->SetUserName(u"changed");
  EXPECT_EQ(u"Known text", User(known));
  LcUResource::DefineString("abc", u"New text");
  known->Relocalise();
  EXPECT_EQ(u"New text", User(known));
  LcUResource::DefineString("abc", u"Known text");
  LcUName* free = new LcUName("unknown", u"x");
  free->SetUserName(u"changed");
  EXPECT_EQ(u"changed", User(free));
  free->SetInternalName("other");
  EXPECT_EQ(u"changed", User(free));
  free->SetInternalName("abc");
  EXPECT_EQ(u"Known text", User(free));
  known->Release();
  free->Release();
}

TEST_F(Names, IndexedNames) {
  struct Row {
    const char* text;
    bool ok;
    int32_t index;
    const char* base;
  } rows[] = {{"a:3", true, 3, "a"},     {"color:12", true, 12, "color"}, {"a:", false, 0, ""},
              {":3", false, 0, ""},      {"a:3b", false, 0, ""},          {"abc", false, 0, ""},
              {"a::7", true, 7, "a:"},  {"z:9", true, 9, "z"},             {"z:90", true, 90, "z"}};
  for (const Row& row : rows) {
    int32_t index = -1;
    LcUStringA base;
    EXPECT_EQ(row.ok, LcUName::ParseIndexedName(row.text, index, base)) << row.text;
    if (row.ok) {
      EXPECT_EQ(row.index, index) << row.text;
      EXPECT_STREQ(row.base, base.Get()) << row.text;
    }
  }
  int32_t none = 0;
  LcUStringA nothing;
  EXPECT_FALSE(LcUName::ParseIndexedName(nullptr, none, nothing));
  LcUName* made = LcUName::MakeIndexedName("size", 4);
  EXPECT_STREQ("size:4", made->GetInternalName());
  EXPECT_EQ(4, made->GetIndex());
  LcUStringA base;
  made->GetBaseName(base);
  EXPECT_STREQ("size", base.Get());
  made->Release();
}

TEST_F(Names, EqualityAndHash) {
  LcUName* a = new LcUName("k", u"U");
  LcUName* b = new LcUName("k", u"U");
  LcUName* c = new LcUName(u"U");
  EXPECT_TRUE(LcUName::Equal(a, b));
  EXPECT_FALSE(LcUName::Equal(a, c));
  EXPECT_TRUE(LcUName::Equal(nullptr, nullptr));
  EXPECT_FALSE(LcUName::Equal(a, nullptr));
  EXPECT_EQ(a->Hash(), b->Hash());
  // h = h * 5 + each user unit, then each internal byte as a signed value.
  EXPECT_EQ(uint32_t('U') * 5 + uint32_t('k'), a->Hash());
  EXPECT_EQ(uint32_t(0) * 5 + uint32_t(int32_t(-61)) * 5 + uint32_t(int32_t(-87)),
            LcUName::Hash(nullptr, "\xc3\xa9"));
  LcUChecksum one, two;
  a->AddToChecksum(one);
  two.AddWideString(u"U");
  two.AddString("k");
  EXPECT_EQ(two.GetResult(), one.GetResult());
  a->Release();
  b->Release();
  c->Release();
}

TEST_F(Names, TablesShareEqualNames) {
  LcUNameTable* table = new LcUNameTable;
  LcUName* first = table->Intern(u"x", "abc");
  LcUName* second = table->Intern(u"y", "abc");  // both resolve to the resource text
  LcUName* other = table->Intern(u"y", "unknown");
  EXPECT_EQ(first, second);
  EXPECT_NE(first, other);
  EXPECT_EQ(2u, table->GetCount());
  EXPECT_EQ(1, first->GetRefCount());
  LcUNameTable* copy = new LcUNameTable(*table);
  EXPECT_EQ(2, first->GetRefCount());
  copy->Release();
  EXPECT_EQ(1, first->GetRefCount());
  first->AddRef();
  table->Remove(first);
  EXPECT_EQ(1u, table->GetCount());
  EXPECT_EQ(1, first->GetRefCount());
  first->Release();
  LcUName* node = LcUName::FindPredefined(LcUName::eNODE, table);
  EXPECT_EQ(node, table->Intern(nullptr, "LcOaNode"));
  EXPECT_EQ(nullptr, LcUName::FindPredefined(99, table));
  LcUString text;
  LcUName::GetPredefinedText(LcUName::eNODE, text);
  EXPECT_TRUE(LcUString::Equal(u"Node", text.Get()));
  LcUName::GetPredefinedText(LcUName::eMATERIAL, text);
  EXPECT_TRUE(text.IsNull());
  table->Release();
}
}  // namespace
