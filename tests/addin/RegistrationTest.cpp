// The module's own registration: the keys a host reads to find, check and
// load the add-in, and their removal. Windows writes its registry, Linux the
// registry store (in a private folder here).
#include <gtest/gtest.h>

#include <string>

#include "TestModule.h"
#include "TestProcess.h"
#include "environment/LcUSysRegistry.h"

namespace {
constexpr int kClasses = LcUSysRegistry::eHIVE_CLASSES_ROOT;
const char16_t kClassKey[] = u"CLSID\\{4285DA55-60B0-4098-802D-93FB37FFBD68}";

std::u16string Key(const char16_t* below) {
  return std::u16string(kClassKey) + (below ? std::u16string(u"\\") + below : u"");
}

std::string Text(const std::u16string& key, const char16_t* name) {
  LcUString value;
  if (!LcUSysRegistry::GetTextValue(kClasses, key.c_str(), name, value)) return "<missing>";
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(value.Get() ? value.Get() : u"", narrow, true);
  return narrow.Get() ? narrow.Get() : "";
}

class Registration : public ::testing::Test {
protected:
  void SetUp() override { TestProcess::SetEnvironment("TW_REGISTRY_DIR", TestProcess::MakeTempFolder("registry")); }
};
}  // namespace

TEST_F(Registration, TheModuleWritesTheTableAndTakesItBack) {
  TestModule module(TW_ADDIN_MODULE);
  ASSERT_TRUE(module.IsLoaded());
  ASSERT_EQ(S_OK, module.RegisterServer(true));

  struct Row {
    std::u16string key;
    const char16_t* name;
    std::string value;
  };
  const std::string guid = "{4285DA55-60B0-4098-802D-93FB37FFBD68}";
  const Row rows[] = {
      {u"TWVeerbackGlf.TWVeerbackGlfServer.1", nullptr, "TWVeerbackGlfServer Class"},
      {u"TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID", nullptr, guid},
      {u"TWVeerbackGlf.TWVeerbackGlfServer", nullptr, "TWVeerbackGlfServer Class"},
      {u"TWVeerbackGlf.TWVeerbackGlfServer\\CLSID", nullptr, guid},
      {u"TWVeerbackGlf.TWVeerbackGlfServer\\CurVer", nullptr, "TWVeerbackGlf.TWVeerbackGlfServer.1"},
      {Key(nullptr), nullptr, "TWVeerbackGlf"},
      {Key(u"ProgID"), nullptr, "TWVeerbackGlf.TWVeerbackGlfServer.1"},
      {Key(u"VersionIndependentProgID"), nullptr, "TWVeerbackGlf.TWVeerbackGlfServer"},
      {Key(u"InprocServer32"), nullptr, TestProcess::NativePath(TW_ADDIN_MODULE)},
      {Key(u"InprocServer32"), u"ThreadingModel", "Apartment"},
      {Key(u"TypeLib"), nullptr, "{87F89B3F-63AB-4FD0-9D08-2F92D86D83D3}"},
      {Key(u"Settings"), u"LoadOnStartUp", "1"},
      {Key(u"Settings"), u"SupportedSoftwareVersionGreaterThan", "14.."},
      {Key(u"Settings"), u"Type", "Standard"},
      {Key(u"Description"), nullptr, "TarnwicketFactory addin for Tarnwicket Veerback"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.value, Text(row.key, row.name)) << Text(row.key, nullptr);
  int32_t version = 0;
  EXPECT_TRUE(LcUSysRegistry::GetInt32Value(kClasses, Key(u"Settings").c_str(), u"Version", version));
  EXPECT_EQ(1, version);
  EXPECT_TRUE(
      LcUSysRegistry::KeyExists(kClasses, Key(u"Implemented Categories\\{A1852043-E45B-4388-8B69-79B248358B99}").c_str()));

  // Registering again over the first leaves one registration.
  ASSERT_EQ(S_OK, module.RegisterServer(true));
  EXPECT_EQ(1u, LcUSysRegistry::CountSubKeys(kClasses, Key(u"Implemented Categories").c_str()));

  ASSERT_EQ(S_OK, module.RegisterServer(false));
  EXPECT_FALSE(LcUSysRegistry::KeyExists(kClasses, kClassKey));
  EXPECT_FALSE(LcUSysRegistry::KeyExists(kClasses, u"TWVeerbackGlf.TWVeerbackGlfServer"));
  EXPECT_TRUE(LcUSysRegistry::KeyExists(kClasses, u"CLSID")) << "CLSID is never removed";
}
