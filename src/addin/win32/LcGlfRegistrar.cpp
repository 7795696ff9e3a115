#include "addin/win32/LcGlfRegistrar.h"

#include <shlwapi.h>

namespace {
const wchar_t* Wide(const LcUString& text) {
  return reinterpret_cast<const wchar_t*>(text.Get() ? text.Get() : u"");
}

HRESULT FromError(LONG error) {
  return error == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(error);
}

HRESULT WriteKey(HKEY parent, const LcGlfRegistryScript::Key& key) {
  if (key.removal == LcGlfRegistryScript::eKEY_FORCE_REMOVE) SHDeleteKeyW(parent, Wide(key.name));
  HKEY handle = nullptr;
  LONG error = RegCreateKeyExW(parent, Wide(key.name), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &handle, nullptr);
  if (error != ERROR_SUCCESS) return FromError(error);
  HRESULT hr = S_OK;
  for (const LcGlfRegistryScript::Value& value : key.values) {
    const wchar_t* name = value.name.IsEmpty() ? nullptr : Wide(value.name);
    if (value.type == LcGlfRegistryScript::eVALUE_STRING) {
      DWORD bytes = DWORD((value.text.Length() + 1) * sizeof(wchar_t));
      error = RegSetValueExW(handle, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(Wide(value.text)), bytes);
    } else {
      error = RegSetValueExW(handle, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value.number),
                             sizeof(value.number));
    }
    if (error != ERROR_SUCCESS) hr = FromError(error);
  }
  for (const LcGlfRegistryScript::Key& child : key.children)
    if (SUCCEEDED(hr)) hr = WriteKey(handle, child);
  RegCloseKey(handle);
  return hr;
}

void RemoveKey(HKEY parent, const LcGlfRegistryScript::Key& key) {
  if (key.removal == LcGlfRegistryScript::eKEY_FORCE_REMOVE) {
    SHDeleteKeyW(parent, Wide(key.name));
    return;
  }
  HKEY handle = nullptr;
  if (RegOpenKeyExW(parent, Wide(key.name), 0, KEY_READ | KEY_WRITE, &handle) != ERROR_SUCCESS) return;
  for (const LcGlfRegistryScript::Key& child : key.children) RemoveKey(handle, child);
  RegCloseKey(handle);
  // Fails, and so keeps the key, while others' subkeys remain in it.
  if (key.removal == LcGlfRegistryScript::eKEY_PLAIN) RegDeleteKeyW(parent, Wide(key.name));
}
}  // namespace

HRESULT LcGlfRegistrar::LoadScript(HMODULE module, int id, const char16_t* modulePath, LcGlfRegistryScript& script) {
  HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), L"REGISTRY");
  HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
  const char* text = loaded ? static_cast<const char*>(LockResource(loaded)) : nullptr;
  if (!text) return HRESULT_FROM_WIN32(ERROR_RESOURCE_DATA_NOT_FOUND);
  return script.Parse(text, SizeofResource(module, resource), modulePath) ? S_OK : E_UNEXPECTED;
}

HRESULT LcGlfRegistrar::Register(const LcGlfRegistryScript& script) {
  for (const LcGlfRegistryScript::Key& key : script.GetKeys()) {
    HRESULT hr = WriteKey(HKEY_CLASSES_ROOT, key);
    if (FAILED(hr)) return hr;
  }
  return S_OK;
}

HRESULT LcGlfRegistrar::Unregister(const LcGlfRegistryScript& script) {
  for (const LcGlfRegistryScript::Key& key : script.GetKeys()) RemoveKey(HKEY_CLASSES_ROOT, key);
  return S_OK;
}
