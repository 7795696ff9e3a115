#include "HostSimAddIn.h"

#include <dlfcn.h>

#include "HostSimRegistration.h"
#include "HostSimText.h"
#include "addin/LcGlfGuids.h"

bool HostSimAddIn::Load(const HostSimOptions& options, std::string& error) {
  // As COM would: the registered class of the add-in category, or the one
  // --clsid names, from the module its registration names. --addin skips
  // the registry.
  GUID clsid = options.haveClsid ? options.clsid : CLSID_TWVeerbackGlfServer;
  std::string path = options.addin;
  if (path.empty()) {
    if (!options.haveClsid && !HostSimRegistration::FindStartUpAddIn(clsid)) {
      error = "no registered add-in of Gearloft's category loads on start-up; register twveerbackglf.so with "
              "veerback register";
      return false;
    }
    if (!HostSimRegistration::GetModule(clsid, path)) {
      error = "the add-in's class is not registered: " + HostSimText::Hex(REGDB_E_CLASSNOTREG);
      return false;
    }
  }
  module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module) {
    const char* why = dlerror();
    error = "can't load the add-in: " + std::string(why ? why : path.c_str());
    return false;
  }
  auto getClassObject = reinterpret_cast<HRESULT (*)(REFCLSID, REFIID, void**)>(Symbol("DllGetClassObject"));
  if (!getClassObject) {
    error = path + " exports no DllGetClassObject";
    return false;
  }
  IClassFactory* factory = nullptr;
  HRESULT hr = getClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  if (SUCCEEDED(hr)) {
    hr = factory->CreateInstance(nullptr, IID_ITWVeerbackGlfServer, reinterpret_cast<void**>(&server));
    factory->Release();
  }
  if (FAILED(hr) || !server) {
    server = nullptr;
    error = "the add-in " + path + " made no server: " + HostSimText::Hex(hr);
    return false;
  }
  description = path;
  return true;
}

void* HostSimAddIn::Symbol(const char* name) const {
  return module ? dlsym(module, name) : nullptr;
}

void HostSimAddIn::Unload() {
  if (server) server->Release();
  server = nullptr;
  if (!module) return;
  // A module that still has objects out stays loaded, as COM would keep it.
  auto canUnloadNow = reinterpret_cast<HRESULT (*)()>(Symbol("DllCanUnloadNow"));
  if (!canUnloadNow || canUnloadNow() == S_OK) dlclose(module);
  module = nullptr;
}
