#include "HostSimAddIn.h"

#include <windows.h>

#include "HostSimText.h"
#include "addin/LcGlfGuids.h"

namespace {
std::wstring GuidText(REFGUID guid) {
  char16_t text[40];
  LcGlfGuidToText(guid, text);
  return std::wstring(text, text + 38);
}

bool KeyExists(const std::wstring& key) {
  HKEY handle = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &handle) != ERROR_SUCCESS) return false;
  RegCloseKey(handle);
  return true;
}

// Gearloft's rule: a class of its add-in category whose Settings say
// LoadOnStartUp "1".
bool LoadsOnStartUp(const std::wstring& classKey) {
  if (!KeyExists(classKey + L"\\Implemented Categories\\" + GuidText(CATID_GlfAddIns))) return false;
  wchar_t value[8] = {};
  DWORD bytes = sizeof(value) - sizeof(wchar_t);
  return RegGetValueW(HKEY_CLASSES_ROOT, (classKey + L"\\Settings").c_str(), L"LoadOnStartUp", RRF_RT_REG_SZ, nullptr,
                      value, &bytes) == ERROR_SUCCESS &&
         std::wstring(value) == L"1";
}

bool FindRegistered(CLSID& clsid) {
  HKEY classes = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, L"CLSID", 0, KEY_READ, &classes) != ERROR_SUCCESS) return false;
  bool found = false;
  wchar_t name[64];
  DWORD length = 64;
  for (DWORD i = 0; !found; ++i, length = 64) {
    LONG status = RegEnumKeyExW(classes, i, name, &length, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_NO_MORE_ITEMS) break;
    found = status == ERROR_SUCCESS && LoadsOnStartUp(std::wstring(L"CLSID\\") + name) &&
            SUCCEEDED(CLSIDFromString(name, &clsid));
  }
  RegCloseKey(classes);
  return found;
}
}  // namespace

bool HostSimAddIn::Load(const HostSimOptions& options, std::string& error) {
  if (!options.addin.empty()) {
    error = "--addin is for Linux; on Windows the add-in is found by its registration (--clsid picks one)";
    return false;
  }
  CLSID clsid = options.clsid;
  if (!options.haveClsid && !FindRegistered(clsid)) {
    error = "no registered add-in of Gearloft's category loads on start-up; register twveerbackglf.dll with regsvr32";
    return false;
  }
  std::wstring wide = GuidText(clsid);
  description = std::string(wide.begin(), wide.end());
  HRESULT hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_ITWVeerbackGlfServer,
                                reinterpret_cast<void**>(&server));
  if (FAILED(hr) || !server) {
    server = nullptr;
    error = "can't create the add-in " + description + ": " + HostSimText::Hex(hr);
    return false;
  }
  return true;
}

void* HostSimAddIn::Symbol(const char*) const {
  return nullptr;
}

void HostSimAddIn::Unload() {
  if (server) server->Release();
  server = nullptr;
}
