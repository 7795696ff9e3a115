// The add-in's registration in the classes root: checking it, and writing
// or removing it through the module's own server functions.
#include <cstdio>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackPlatform.h"
#include "addin/LcGlfGuids.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysRegistry.h"

namespace {
constexpr int kClasses = LcUSysRegistry::eHIVE_CLASSES_ROOT;

bool HasText(const char16_t* key, const char16_t* name, const char16_t* expected) {
  LcUString value;
  return LcUSysRegistry::GetTextValue(kClasses, key, name, value) && LcUString::Equal(value.Get(), expected);
}
}  // namespace

bool VeerbackCommands::CheckRegistration() {
  char16_t guid[40];
  LcGlfGuidToText(CLSID_TWVeerbackGlfServer, guid);
  LcUString classKey, inproc, settings;
  LcUSysRegistry::JoinKey(u"CLSID", guid, nullptr, nullptr, classKey);
  LcUSysRegistry::JoinKey(classKey.Get(), u"InprocServer32", nullptr, nullptr, inproc);
  LcUSysRegistry::JoinKey(classKey.Get(), u"Settings", nullptr, nullptr, settings);

  bool good = Check(HasText(classKey.Get(), nullptr, u"TWVeerbackGlf"), "the class key is registered");
  good &= Check(HasText(u"TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID", nullptr, guid), "the ProgID names the class");
  good &= Check(HasText(u"TWVeerbackGlf.TWVeerbackGlfServer\\CurVer", nullptr, u"TWVeerbackGlf.TWVeerbackGlfServer.1"),
                "the version-independent ProgID names the current version");
  LcUString module;
  bool named = LcUSysRegistry::GetTextValue(kClasses, inproc.Get(), nullptr, module) && !module.IsEmpty();
  good &= Check(named && LcUSysFile::Exists(module.Get()), "InprocServer32 names an existing file");
  if (named) {
    std::fputs("        ", stdout);
    PrintWide(stdout, module.Get());
    std::fputs("\n", stdout);
  }
  good &= Check(HasText(inproc.Get(), u"ThreadingModel", u"Apartment"), "ThreadingModel is Apartment");
  good &= Check(HasText(settings.Get(), u"LoadOnStartUp", u"1"), "Settings: LoadOnStartUp is \"1\"");
  good &= Check(HasText(settings.Get(), u"SupportedSoftwareVersionGreaterThan", u"14.."),
                "Settings: SupportedSoftwareVersionGreaterThan is \"14..\"");
  good &= Check(HasText(settings.Get(), u"Type", u"Standard"), "Settings: Type is \"Standard\"");
  int32_t version = 0;
  good &= Check(LcUSysRegistry::GetInt32Value(kClasses, settings.Get(), u"Version", version) && version == 1,
                "Settings: Version is 1");
  return good;
}

int VeerbackCommands::Register(const char16_t* module, bool install) {
  const char* function = install ? "DllRegisterServer" : "DllUnregisterServer";
  HRESULT hr = E_FAIL;
  if (!VeerbackPlatform::CallServerFunction(module, function, hr)) {
    std::fputs("veerback: can't load ", stderr);
    PrintWide(stderr, module);
    std::fprintf(stderr, " or it exports no %s\n", function);
    return eFAILED;
  }
  if (FAILED(hr)) {
    std::fprintf(stderr, "veerback: %s failed: 0x%08X\n", function, unsigned(hr));
    return eFAILED;
  }
  std::printf("%s succeeded\n", function);
  return eOK;
}
