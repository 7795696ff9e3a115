#include "addin/LcGlfRegistrar.h"

#include "environment/LcUSysRegistry.h"

namespace {
constexpr int kHive = LcUSysRegistry::eHIVE_CLASSES_ROOT;
// The class's registration could not be written.
constexpr HRESULT kClassNotWritten = static_cast<HRESULT>(0x80040201);  // SELFREG_E_CLASS

// The key's full path; the hive's own keys have no parent.
LcUString PathOf(const LcUString& parent, const LcGlfRegistryScript::Key& key) {
  LcUString path(key.name.Get());
  if (!parent.IsEmpty()) LcUSysRegistry::JoinKey(parent.Get(), key.name.Get(), nullptr, nullptr, path);
  return path;
}

bool WriteKey(const LcUString& parent, const LcGlfRegistryScript::Key& key) {
  LcUString path = PathOf(parent, key);
  if (key.removal == LcGlfRegistryScript::eKEY_FORCE_REMOVE) LcUSysRegistry::DeleteKey(kHive, path.Get(), true);
  if (!LcUSysRegistry::CreateKey(kHive, path.Get())) return false;
  for (const LcGlfRegistryScript::Value& value : key.values) {
    const char16_t* name = value.name.IsEmpty() ? nullptr : value.name.Get();
    bool written = value.type == LcGlfRegistryScript::eVALUE_STRING
                       ? LcUSysRegistry::SetTextValue(kHive, path.Get(), name, value.text.Get() ? value.text.Get() : u"")
                       : LcUSysRegistry::SetInt32Value(kHive, path.Get(), name, int32_t(value.number));
    if (!written) return false;
  }
  for (const LcGlfRegistryScript::Key& child : key.children)
    if (!WriteKey(path, child)) return false;
  return true;
}

void RemoveKey(const LcUString& parent, const LcGlfRegistryScript::Key& key) {
  LcUString path = PathOf(parent, key);
  if (key.removal == LcGlfRegistryScript::eKEY_FORCE_REMOVE) {
    LcUSysRegistry::DeleteKey(kHive, path.Get(), true);
    return;
  }
  if (!LcUSysRegistry::KeyExists(kHive, path.Get())) return;
  for (const LcGlfRegistryScript::Key& child : key.children) RemoveKey(path, child);
  // Fails, and so keeps the key, while others' sub-keys remain in it.
  if (key.removal == LcGlfRegistryScript::eKEY_PLAIN) LcUSysRegistry::DeleteKey(kHive, path.Get(), false);
}
}  // namespace

HRESULT LcGlfRegistrar::Register(const LcGlfRegistryScript& script) {
  LcUSysRegistry::Initialize();
  const LcUString root;
  HRESULT hr = S_OK;
  for (const LcGlfRegistryScript::Key& key : script.GetKeys())
    if (SUCCEEDED(hr) && !WriteKey(root, key)) hr = kClassNotWritten;
  LcUSysRegistry::Terminate();
  return hr;
}

HRESULT LcGlfRegistrar::Unregister(const LcGlfRegistryScript& script) {
  LcUSysRegistry::Initialize();
  const LcUString root;
  for (const LcGlfRegistryScript::Key& key : script.GetKeys()) RemoveKey(root, key);
  LcUSysRegistry::Terminate();
  return S_OK;
}
