#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "TestProcess.h"
#include "addin/LcGlfRegistryScript.h"

namespace {
std::string ReadScript() {
  std::ifstream in(TestProcess::NativePath(TW_REGISTRY_SCRIPT), std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::u16string Text(const LcUString& s) {
  return std::u16string(s.Get() ? s.Get() : u"");
}

const LcGlfRegistryScript::Key* Find(const std::vector<LcGlfRegistryScript::Key>& keys, const char16_t* path) {
  std::u16string rest(path);
  const std::vector<LcGlfRegistryScript::Key>* level = &keys;
  const LcGlfRegistryScript::Key* found = nullptr;
  while (!rest.empty()) {
    size_t cut = rest.find(u'\\');
    std::u16string name = rest.substr(0, cut);
    rest = cut == std::u16string::npos ? u"" : rest.substr(cut + 1);
    found = nullptr;
    for (const auto& key : *level)
      if (Text(key.name) == name) found = &key;
    if (!found) return nullptr;
    level = &found->children;
  }
  return found;
}
}  // namespace

TEST(LcGlfRegistryScript, TheModulesScriptHoldsEveryKeyAndValue) {
  std::string text = ReadScript();
  ASSERT_FALSE(text.empty());
  LcGlfRegistryScript script;
  ASSERT_TRUE(script.Parse(text.data(), int64_t(text.size()), u"C:\\Gearloft\\Add-ins\\twveerbackglf.dll"))
      << script.GetError().Get();

  const char16_t* const kClass = u"{4285DA55-60B0-4098-802D-93FB37FFBD68}";
  struct Row {
    std::u16string key;
    const char16_t* name;
    int type;
    std::u16string text;
    uint32_t number;
  };
  const std::u16string cls = std::u16string(u"CLSID\\") + kClass;
  const Row rows[] = {
      {u"TWVeerbackGlf.TWVeerbackGlfServer.1", u"", 1, u"TWVeerbackGlfServer Class", 0},
      {u"TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID", u"", 1, kClass, 0},
      {u"TWVeerbackGlf.TWVeerbackGlfServer", u"", 1, u"TWVeerbackGlfServer Class", 0},
      {u"TWVeerbackGlf.TWVeerbackGlfServer\\CLSID", u"", 1, kClass, 0},
      {u"TWVeerbackGlf.TWVeerbackGlfServer\\CurVer", u"", 1, u"TWVeerbackGlf.TWVeerbackGlfServer.1", 0},
      {cls, u"", 1, u"TWVeerbackGlf", 0},
      {cls + u"\\ProgID", u"", 1, u"TWVeerbackGlf.TWVeerbackGlfServer.1", 0},
      {cls + u"\\VersionIndependentProgID", u"", 1, u"TWVeerbackGlf.TWVeerbackGlfServer", 0},
      {cls + u"\\InprocServer32", u"", 1, u"C:\\Gearloft\\Add-ins\\twveerbackglf.dll", 0},
      {cls + u"\\InprocServer32", u"ThreadingModel", 1, u"Apartment", 0},
      {cls + u"\\TypeLib", u"", 1, u"{87F89B3F-63AB-4FD0-9D08-2F92D86D83D3}", 0},
      {cls + u"\\Settings", u"LoadOnStartUp", 1, u"1", 0},
      {cls + u"\\Settings", u"SupportedSoftwareVersionGreaterThan", 1, u"14..", 0},
      {cls + u"\\Settings", u"Version", 4, u"", 1},
      {cls + u"\\Settings", u"Type", 1, u"Standard", 0},
      {cls + u"\\Description", u"", 1, u"TarnwicketFactory addin for Tarnwicket Veerback", 0},
  };
  for (const Row& row : rows) {
    const LcGlfRegistryScript::Key* key = Find(script.GetKeys(), row.key.c_str());
    ASSERT_NE(nullptr, key) << std::string(row.key.begin(), row.key.end());
    const LcGlfRegistryScript::Value* value = nullptr;
    for (const auto& v : key->values)
      if (Text(v.name) == row.name) value = &v;
    ASSERT_NE(nullptr, value);
    EXPECT_EQ(row.type, value->type);
    if (row.type == LcGlfRegistryScript::eVALUE_STRING) {
      EXPECT_EQ(row.text, Text(value->text));
    }
    if (row.type == LcGlfRegistryScript::eVALUE_DWORD) {
      EXPECT_EQ(row.number, value->number);
    }
  }
  const LcGlfRegistryScript::Key* category =
      Find(script.GetKeys(), (cls + u"\\Implemented Categories\\{A1852043-E45B-4388-8B69-79B248358B99}").c_str());
  ASSERT_NE(nullptr, category);
  EXPECT_TRUE(category->values.empty());
  EXPECT_EQ(LcGlfRegistryScript::eKEY_NO_REMOVE, Find(script.GetKeys(), u"CLSID")->removal);
  EXPECT_EQ(LcGlfRegistryScript::eKEY_FORCE_REMOVE, Find(script.GetKeys(), cls.c_str())->removal);
}

TEST(LcGlfRegistryScript, AQuoteInTheModulePathStaysInTheValue) {
  const char text[] = "HKCR { A = s '%MODULE%' }";
  LcGlfRegistryScript script;
  ASSERT_TRUE(script.Parse(text, sizeof(text) - 1, u"C:\\it's\\x.dll")) << script.GetError().Get();
  EXPECT_EQ(u"C:\\it's\\x.dll", Text(script.GetKeys()[0].values[0].text));
}

TEST(LcGlfRegistryScript, MalformedScriptsReportTheLine) {
  struct Case {
    const char* text;
    const char* error;
  };
  const Case cases[] = {
      {"HKLM { }", "registry script line 1: the script must start with HKCR"},
      {"HKCR {\n A = s 'x'\n", "registry script line 3: missing closing brace"},
      {"HKCR {\n A = q 'x'\n}", "registry script line 2: value type must be s or d"},
      {"HKCR {\n val N = d 12x\n}", "registry script line 2: number expected"},
      {"HKCR {\n A = s 'open\n}", "registry script line 3: unterminated quoted text"},
      {"HKCR { } extra", "registry script line 1: text after the closing brace"},
      {"HKCR { = }", "registry script line 1: key name expected"},
  };
  for (const Case& c : cases) {
    LcGlfRegistryScript script;
    EXPECT_FALSE(script.Parse(c.text, int64_t(std::string(c.text).size()), u"m")) << c.text;
    EXPECT_STREQ(c.error, script.GetError().Get()) << c.text;
  }
  std::string deep = "HKCR {";
  for (int i = 0; i < 40; ++i) deep += " K {";
  LcGlfRegistryScript script;
  EXPECT_FALSE(script.Parse(deep.data(), int64_t(deep.size()), u"m"));
  EXPECT_STREQ("registry script line 1: keys nested too deep", script.GetError().Get());
}
