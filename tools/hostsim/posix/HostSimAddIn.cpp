#include "HostSimAddIn.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include "HostSimText.h"
#include "addin/LcGlfGuids.h"

namespace {
std::string OwnFolder() {
  char path[PATH_MAX];
  ssize_t n = readlink("/proc/self/exe", path, sizeof(path) - 1);
  if (n <= 0) return ".";
  std::string program(path, size_t(n));
  return program.substr(0, program.rfind('/'));
}

// Beside hostsim, where an installation keeps libraries, or in the build tree.
std::string DefaultModule() {
  std::string folder = OwnFolder();
  for (const char* place : {"/", "/../lib/", "/../../src/addin/"}) {
    char* found = realpath((folder + place + "twveerbackglf.so").c_str(), nullptr);
    if (!found) continue;
    std::string module = found;
    free(found);
    return module;
  }
  return std::string();
}
}  // namespace

bool HostSimAddIn::Load(const HostSimOptions& options, std::string& error) {
  std::string path = options.addin.empty() ? DefaultModule() : options.addin;
  if (path.empty()) {
    error = "no twveerbackglf.so beside hostsim, in ../lib or in the build tree; give --addin PATH";
    return false;
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
  HRESULT hr = getClassObject(options.haveClsid ? options.clsid : CLSID_TWVeerbackGlfServer, IID_IClassFactory,
                              reinterpret_cast<void**>(&factory));
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
