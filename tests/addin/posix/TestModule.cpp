#include "TestModule.h"

#include <dlfcn.h>

TestModule::TestModule(const std::string& path) : handle(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {}

TestModule::~TestModule() {
  if (handle) dlclose(handle);
}

void* TestModule::Symbol(const char* name) {
  return handle ? dlsym(handle, name) : nullptr;
}

HRESULT TestModule::GetClassObject(REFCLSID clsid, REFIID riid, void** object) {
  auto function = reinterpret_cast<HRESULT (*)(REFCLSID, REFIID, void**)>(Symbol("DllGetClassObject"));
  return function ? function(clsid, riid, object) : E_FAIL;
}

HRESULT TestModule::CanUnloadNow() {
  auto function = reinterpret_cast<HRESULT (*)()>(Symbol("DllCanUnloadNow"));
  return function ? function() : E_FAIL;
}

HRESULT TestModule::RegisterServer(bool install) {
  auto function = reinterpret_cast<HRESULT(*)()>(Symbol(install ? "DllRegisterServer" : "DllUnregisterServer"));
  return function ? function() : E_FAIL;
}

int TestModule::PurifyIsRunning() {
  auto function = reinterpret_cast<int (*)()>(Symbol("PurifyIsRunning"));
  return function ? function() : -1;
}

void TestModule::Pump() {
  auto function = reinterpret_cast<void (*)()>(Symbol("TWVeerbackGlfDispatchPending"));
  if (function) function();
}
