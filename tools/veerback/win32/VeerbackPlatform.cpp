#include "VeerbackPlatform.h"

#include <windows.h>
#include <shellapi.h>

#include "VeerbackOutput.h"
#include "addin/LcGlfGuids.h"

namespace {
const wchar_t* Wide(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}

// The string value, or empty when the key or value is missing.
bool ReadString(const wchar_t* key, const wchar_t* name, LcUString& value) {
  wchar_t data[1024];
  DWORD bytes = sizeof(data) - sizeof(wchar_t);
  DWORD type = 0;
  if (RegGetValueW(HKEY_CLASSES_ROOT, key, name, RRF_RT_REG_SZ, &type, data, &bytes) != ERROR_SUCCESS) {
    value.Clear();
    return false;
  }
  value.Assign(reinterpret_cast<const char16_t*>(data));
  return true;
}

bool HasString(const wchar_t* key, const wchar_t* name, const char16_t* expected) {
  LcUString value;
  return ReadString(key, name, value) && LcUString::Equal(value.Get(), expected);
}
}  // namespace

void VeerbackPlatform::GetArguments(int, char**, std::vector<LcUString>& arguments) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; wide && i < count; ++i) arguments.emplace_back(reinterpret_cast<const char16_t*>(wide[i]));
  LocalFree(wide);
}

bool VeerbackPlatform::CheckRegistration() {
  char16_t guid[40];
  LcGlfGuidToText(CLSID_TWVeerbackGlfServer, guid);
  LcUString classKey(u"CLSID\\");
  classKey.Append(guid);
  LcUString inproc(classKey), settings(classKey);
  inproc.Append(u"\\InprocServer32");
  settings.Append(u"\\Settings");

  bool good = Check(HasString(Wide(classKey.Get()), nullptr, u"TWVeerbackGlf"), "the class key is registered");
  good &= Check(HasString(L"TWVeerbackGlf.TWVeerbackGlfServer.1\\CLSID", nullptr, guid), "the ProgID names the class");
  good &= Check(HasString(L"TWVeerbackGlf.TWVeerbackGlfServer\\CurVer", nullptr, u"TWVeerbackGlf.TWVeerbackGlfServer.1"),
                "the version-independent ProgID names the current version");
  LcUString module;
  bool named = ReadString(Wide(inproc.Get()), nullptr, module);
  good &= Check(named && GetFileAttributesW(Wide(module.Get())) != INVALID_FILE_ATTRIBUTES,
                "InprocServer32 names an existing file");
  if (named) {
    std::fputs("        ", stdout);
    PrintWide(stdout, module.Get());
    std::fputs("\n", stdout);
  }
  good &= Check(HasString(Wide(inproc.Get()), L"ThreadingModel", u"Apartment"), "ThreadingModel is Apartment");
  good &= Check(HasString(Wide(settings.Get()), L"LoadOnStartUp", u"1"), "Settings: LoadOnStartUp is \"1\"");
  good &= Check(HasString(Wide(settings.Get()), L"SupportedSoftwareVersionGreaterThan", u"14.."),
                "Settings: SupportedSoftwareVersionGreaterThan is \"14..\"");
  good &= Check(HasString(Wide(settings.Get()), L"Type", u"Standard"), "Settings: Type is \"Standard\"");
  DWORD version = 0, bytes = sizeof(version);
  good &= Check(RegGetValueW(HKEY_CLASSES_ROOT, Wide(settings.Get()), L"Version", RRF_RT_REG_DWORD, nullptr, &version,
                             &bytes) == ERROR_SUCCESS && version == 1,
                "Settings: Version is 1");
  return good;
}

bool VeerbackPlatform::IsFolderWritable(const char16_t* folder) {
  wchar_t probe[MAX_PATH];
  if (!GetTempFileNameW(Wide(folder), L"vbk", 0, probe)) return false;
  DeleteFileW(probe);
  return true;
}
