#include "TestModule.h"

#include <windows.h>

TestModule::TestModule(const std::string& path) : handle(LoadLibraryA(path.c_str())) {}

TestModule::~TestModule() {
  if (handle) FreeLibrary(static_cast<HMODULE>(handle));
}

void* TestModule::Symbol(const char* name) {
  return handle ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name)) : nullptr;
}

HRESULT TestModule::GetClassObject(REFCLSID clsid, REFIID riid, void** object) {
  auto function = reinterpret_cast<HRESULT(WINAPI*)(REFCLSID, REFIID, void**)>(Symbol("DllGetClassObject"));
  return function ? function(clsid, riid, object) : E_FAIL;
}

HRESULT TestModule::CanUnloadNow() {
  auto function = reinterpret_cast<HRESULT(WINAPI*)()>(Symbol("DllCanUnloadNow"));
  return function ? function() : E_FAIL;
}

HRESULT TestModule::RegisterServer(bool install) {
  auto function = reinterpret_cast<HRESULT(WINAPI*)()>(Symbol(install ? "DllRegisterServer" : "DllUnregisterServer"));
  return function ? function() : E_FAIL;
}

int TestModule::PurifyIsRunning() {
  auto function = reinterpret_cast<int (*)()>(Symbol("PurifyIsRunning"));
  return function ? function() : -1;
}

void TestModule::Pump() {
  // The add-in's window belongs to this thread: its messages come with ours.
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}
