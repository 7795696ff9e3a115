// The add-in's registration in the classes root: checking it, and writing
// or removing it through the module's own server functions.
#include <cstdio>
#include <string>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "VeerbackPlatform.h"
#include "addin/LcGlfGuids.h"
#include "addin/LcOmTrackBackSender.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysRegistry.h"

namespace {
constexpr int kClasses = LcUSysRegistry::eHIVE_CLASSES_ROOT;
const char* const kRegister = "register the add-in: veerback register MODULE (or on Windows regsvr32 MODULE)";

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

  // Without the class key the rest can't be there either: one finding.
  if (!Check(HasText(classKey.Get(), nullptr, u"TWVeerbackGlf"), "the add-in is registered", kRegister)) return false;
  bool good = Check(HasText(u"TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID", nullptr, guid), "the ProgID names the class",
                    kRegister);
  good &= Check(HasText(u"TWVeerbackGlf.TWVeerbackGlfServer\\CurVer", nullptr, u"TWVeerbackGlf.TWVeerbackGlfServer.1"),
                "the version-independent ProgID names the current version", kRegister);
  LcUString module;
  bool named = LcUSysRegistry::GetTextValue(kClasses, inproc.Get(), nullptr, module) && !module.IsEmpty();
  good &= Check(named && LcUSysFile::Exists(module.Get()), "InprocServer32 names an existing file",
                "the module moved or was removed: register it again where it now lies");
  if (named) {
    std::fputs("        ", stdout);
    PrintWide(stdout, module.Get());
    std::fputs("\n", stdout);
  }
  good &= Check(HasText(inproc.Get(), u"ThreadingModel", u"Apartment"), "ThreadingModel is Apartment", kRegister);
  good &= Check(HasText(settings.Get(), u"LoadOnStartUp", u"1"), "Settings: LoadOnStartUp is \"1\"", kRegister);
  good &= Check(HasText(settings.Get(), u"SupportedSoftwareVersionGreaterThan", u"14.."),
                "Settings: SupportedSoftwareVersionGreaterThan is \"14..\"", kRegister);
  good &= Check(HasText(settings.Get(), u"Type", u"Standard"), "Settings: Type is \"Standard\"", kRegister);
  int32_t version = 0;
  good &= Check(LcUSysRegistry::GetInt32Value(kClasses, settings.Get(), u"Version", version) && version == 1,
                "Settings: Version is 1", kRegister);
  return good;
}

int VeerbackCommands::Register(const char16_t* module, bool install) {
  const char* function = install ? "DllRegisterServer" : "DllUnregisterServer";
  // As typed: a bare name would otherwise be looked for on the library path.
  LcUString path;
  LcOmTrackBackSender::MakeAbsolute(module, path);
  std::string why;
  HRESULT hr = E_FAIL;
  VeerbackPlatform::Call call = VeerbackPlatform::eNOT_LOADED;
  if (!LcUSysFile::Exists(path.Get()))
    why = ": no such file";
  else if (LcUSysFile::IsDirectory(path.Get()))
    why = ": a folder, not a module";
  else if ((call = VeerbackPlatform::CallServerFunction(path.Get(), function, hr, why)) == VeerbackPlatform::eNOT_LOADED)
    why = ": not a module that can be loaded here: " + why;
  else if (call == VeerbackPlatform::eNO_FUNCTION)
    why = std::string(": a module without the server functions (no ") + function + ")";
  if (!why.empty()) {
    std::fputs("veerback: ", stderr);
    PrintWide(stderr, path.Get());
    std::fprintf(stderr, "%s\n", why.c_str());
    return eBAD_INPUT;
  }
  if (FAILED(hr)) {
    std::fprintf(stderr, "veerback: %s failed: 0x%08X\n", function, unsigned(hr));
    return eFAILED;
  }
  std::printf("%s succeeded\n", function);
  return eOK;
}
