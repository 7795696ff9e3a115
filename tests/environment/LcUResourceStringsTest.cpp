#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ResourceTest.h"

using namespace EnvironmentTesting;

namespace {
TEST(LcUResourceUnstarted, LookUpsGiveTheirFallbacks) {
  ASSERT_EQ(LcUResource::IsInitialised(), 0);
  EXPECT_STREQ(reinterpret_cast<const char*>(LcUResource::FindString("a", u"built in")),
               reinterpret_cast<const char*>(u"built in"));
  EXPECT_FALSE(LcUResource::HasString("a"));
  EXPECT_FALSE(LcUResource::DefineString("a", u"x"));
}

class LcUResourceStrings : public ResourceTest {};

TEST_F(LcUResourceStrings, FormsOfLookUp) {
  ASSERT_TRUE(LcUResource::DefineString("greeting", u"Hallo"));
  LcUString out;
  EXPECT_TRUE(LcUResource::FindString("greeting", out));
  EXPECT_EQ(Narrow(out), "Hallo");
  EXPECT_FALSE(LcUResource::FindString("Greeting", out)) << "case matters";
  EXPECT_EQ(Narrow(out), "Greeting") << "the key stands in for the text";
  EXPECT_EQ(Narrow(LcUString(LcUResource::FindString("greeting", u"fallback"))), "Hallo");
  EXPECT_EQ(Narrow(LcUString(LcUResource::FindString("other", u"fallback"))), "fallback");
  EXPECT_TRUE(LcUResource::HasString("greeting"));
  EXPECT_FALSE(LcUResource::HasString("other"));
  EXPECT_EQ(Narrow(LcUString(LcUResource::FindStringRequired("greeting"))), "Hallo");
}

TEST_F(LcUResourceStrings, RequiredStringLogsItsAbsence) {
  size_t before = LogText().size();
  EXPECT_EQ(Narrow(LcUString(LcUResource::FindStringRequired("no.such"))), "missing text");
  EXPECT_EQ(LogText().substr(before), "LcUResource::FindStringRequired: Cannot find string \"no.such\n");
}

TEST_F(LcUResourceStrings, DefinitionsReplaceAndResolvePending) {
  LcUResource::DefineString("a", u"<${b}>");
  EXPECT_EQ(Text("a"), "<${b}>");
  LcUResource::DefineString("b", u"one");
  EXPECT_EQ(Text("a"), "<one>");
  LcUResource::DefineString("b", u"two");
  EXPECT_EQ(Text("b"), "two");
  EXPECT_EQ(Text("a"), "<one>") << "a resolved entry keeps its text";
  EXPECT_FALSE(LcUResource::DefineString("\xC3\xA9", u"x"));
}

// Keys that share prefixes and differ by one character or one byte of
// length, across every tail length of the hash and many growths of the table.
TEST_F(LcUResourceStrings, EveryKeyFindsItsOwnTextOnly) {
  std::vector<std::string> keys = {""};
  for (int i = 0; i < 3000; ++i) keys.push_back(std::string(size_t(i % 41), 'k') + std::to_string(i));
  for (const char* key : {"a", "A", "ab", "abcdefgh", "abcdefgi", "bbcdefgh", "abcdefghX"}) keys.push_back(key);
  const char16_t* first = nullptr;
  for (size_t i = 0; i < keys.size(); ++i) {
    std::u16string text = u"v" + std::u16string(keys[i].begin(), keys[i].end());
    ASSERT_TRUE(LcUResource::DefineString(keys[i].c_str(), text.c_str())) << keys[i];
    if (i == 1) first = LcUResource::FindString(keys[1].c_str(), nullptr);
  }
  for (const std::string& key : keys) {
    EXPECT_EQ(Text(key.c_str()), "v" + key);
    EXPECT_FALSE(LcUResource::HasString((key + "x").c_str())) << key;
  }
  for (const char* absent : {"abcdefg", "abcdefghi", "B", "k"}) EXPECT_FALSE(LcUResource::HasString(absent)) << absent;
  EXPECT_EQ(LcUResource::FindString(keys[1].c_str(), nullptr), first) << "the text stays where it was";
}

TEST_F(LcUResourceStrings, SourceStringKeyIsFileAndLine) {
  ASSERT_TRUE(LcUResource::DefineSourceString("view.cpp", 42, u"Zoom"));
  EXPECT_EQ(Text("view.cpp:42"), "Zoom");
}

TEST_F(LcUResourceStrings, FallbackAnswersAndJoinsTheTable) {
  static int calls = 0;
  calls = 0;
  LcUResource::SetFallback(
      [](void* context, const char* key) -> const char16_t* {
        ++calls;
        return std::string(key).rfind("ext.", 0) == 0 ? static_cast<const char16_t*>(context) : nullptr;
      },
      const_cast<char16_t*>(u"outside"));
  EXPECT_TRUE(LcUResource::HasString("ext.one"));
  EXPECT_FALSE(LcUResource::HasString("int.one"));
  LcUResource::DefineString("uses", u"[${ext.two}]");
  EXPECT_EQ(Text("uses"), "[outside]");
  int before = calls;
  EXPECT_EQ(Text("ext.one"), "outside");
  EXPECT_EQ(calls, before) << "the answer was kept";
  LcUResource::SetFallback(nullptr, nullptr);
}
}  // namespace
