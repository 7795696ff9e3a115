#include "filestream/LcUFileProtocolRegistry.h"

#include "filestream/LcUSizedObject.h"
#include "filestream/LcUURL.h"
#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUFileProtocolRegistry::component;

namespace {
LcUFileProtocolRegistry* instance = nullptr;
}

bool LcUFileProtocolRegistry::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUFileProtocolRegistry") != 1) return true;
  LcUError::Initialize();
  LcUString::Initialize();
  LcUMemory::Initialize();
  return true;
}

void LcUFileProtocolRegistry::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUSizedObject::Delete(instance);
  LcUMemory::Terminate();
  LcUString::Terminate();
  LcUError::Terminate();
}

LcUFileProtocolRegistry* LcUFileProtocolRegistry::GetInstance() {
  if (!instance) instance = LcUSizedObject::New<LcUFileProtocolRegistry>();
  return instance;
}

LcUFileProtocol* LcUFileProtocolRegistry::Find(const char16_t* scheme) {
  if (LcUFileProtocol** found = protocols.Find(scheme ? scheme : u"")) return *found;
  if (!scheme || !*scheme) return defaultProtocol;
  return nullptr;
}

LcUFileProtocol* LcUFileProtocolRegistry::FindForURL(const char16_t* url) {
  LcUURLParts parts;
  if (!LcUURL::Parse(url, parts)) return nullptr;
  return Find(parts.scheme.Get());
}

bool LcUFileProtocolRegistry::Register(const char16_t* scheme, LcUFileProtocol* protocol) {
  if (!protocol || Find(scheme)) return false;
  return protocols.Insert(scheme ? scheme : u"", protocol) != nullptr;
}

bool LcUFileProtocolRegistry::SetDefault(const char16_t* scheme) {
  LcUFileProtocol** found = protocols.Find(scheme ? scheme : u"");
  if (!found) return false;
  defaultProtocol = *found;
  return true;
}

LcUFileProtocol* LcUFileProtocolRegistry::Unregister(const char16_t* scheme) {
  LcUFileProtocol** found = protocols.Find(scheme ? scheme : u"");
  if (!found) return nullptr;
  LcUFileProtocol* removed = *found;
  protocols.Erase(scheme ? scheme : u"");
  if (defaultProtocol == removed) defaultProtocol = nullptr;
  return removed;
}
