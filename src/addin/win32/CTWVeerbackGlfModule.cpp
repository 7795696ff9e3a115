#include "addin/CTWVeerbackGlfModule.h"

#include "addin/LcGlfGuids.h"
#include "addin/LcGlfRegistryScript.h"
#include "addin/LcGlfRegistrar.h"

namespace {
constexpr int kRegistryScript = 102;

// The module's path, and its registry script (a "REGISTRY" resource) with
// that path put in.
HRESULT LoadOwnScript(HMODULE module, wchar_t (&path)[MAX_PATH], LcGlfRegistryScript& script) {
  DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
  if (length == 0 || length == MAX_PATH) return E_FAIL;
  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(kRegistryScript), L"REGISTRY");
  HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
  const char* text = loaded ? static_cast<const char*>(LockResource(loaded)) : nullptr;
  if (!text) return HRESULT_FROM_WIN32(ERROR_RESOURCE_DATA_NOT_FOUND);
  return script.Parse(text, SizeofResource(module, resource), reinterpret_cast<const char16_t*>(path)) ? S_OK
                                                                                                         : E_UNEXPECTED;
}
}  // namespace

uint32_t CTWVeerbackGlfModule::GetModuleFileName(char16_t* buffer, uint32_t size) const {
  return GetModuleFileNameW(static_cast<HMODULE>(instance), reinterpret_cast<wchar_t*>(buffer), size);
}

HRESULT CTWVeerbackGlfModule::RegisterServer() {
  wchar_t path[MAX_PATH];
  LcGlfRegistryScript script;
  HRESULT hr = LoadOwnScript(static_cast<HMODULE>(instance), path, script);
  if (FAILED(hr)) return hr;
  hr = LcGlfRegistrar::Register(script);
  if (FAILED(hr)) return hr;
  ITypeLib* library = nullptr;
  hr = LoadTypeLibEx(path, REGKIND_REGISTER, &library);
  if (library) library->Release();
  return hr;
}

HRESULT CTWVeerbackGlfModule::UnregisterServer() {
  wchar_t path[MAX_PATH];
  LcGlfRegistryScript script;
  HRESULT hr = LoadOwnScript(static_cast<HMODULE>(instance), path, script);
  if (FAILED(hr)) return hr;
  // A library that was never registered is not a failure of unregistering.
  UnRegisterTypeLib(LIBID_TWVeerbackGlfLib, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
  return LcGlfRegistrar::Unregister(script);
}

HRESULT CTWVeerbackGlfModule::GetTypeInfo(ITypeInfo** info) {
  *info = nullptr;
  if (!typeInfo) {
    wchar_t path[MAX_PATH];
    DWORD length = GetModuleFileNameW(static_cast<HMODULE>(instance), path, MAX_PATH);
    if (length == 0 || length == MAX_PATH) return E_FAIL;
    ITypeLib* library = nullptr;
    HRESULT hr = LoadTypeLibEx(path, REGKIND_NONE, &library);
    if (FAILED(hr)) return hr;
    hr = library->GetTypeInfoOfGuid(IID_ITWVeerbackGlfServer, &typeInfo);
    library->Release();
    if (FAILED(hr)) return hr;
  }
  typeInfo->AddRef();
  *info = typeInfo;
  return S_OK;
}

bool CTWVeerbackGlfModule::HasTypeInfo() {
  ITypeInfo* info = nullptr;
  if (FAILED(GetTypeInfo(&info))) return false;
  info->Release();
  return true;
}
