#include "HostSimAddIn.h"

#include <windows.h>

#include "HostSimRegistration.h"
#include "HostSimText.h"
#include "addin/LcGlfGuids.h"

namespace {
std::wstring GuidText(REFGUID guid) {
  char16_t text[40];
  LcGlfGuidToText(guid, text);
  return std::wstring(text, text + 38);
}

}  // namespace

bool HostSimAddIn::Load(const HostSimOptions& options, std::string& error) {
  if (!options.addin.empty()) {
    error = "--addin is for Linux; on Windows the add-in is found by its registration (--clsid picks one)";
    return false;
  }
  CLSID clsid = options.clsid;
  if (!options.haveClsid && !HostSimRegistration::FindStartUpAddIn(clsid)) {
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
