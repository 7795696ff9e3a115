#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "filestream/LcUSizedObject.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUHttpFileProtocol::component;

namespace {
LcUHttpFileProtocol* installed = nullptr;
}

bool LcUHttpFileProtocol::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUHttpFileProtocol") != 1) return true;
  LcUMemory::Initialize();
  LcUFileProtocolRegistry::Initialize();
  installed = LcUSizedObject::New<LcUHttpFileProtocol>();
  LcUFileProtocolRegistry* registry = LcUFileProtocolRegistry::GetInstance();
  if (!installed || !registry) return false;
  registry->Register(u"http", installed);
  registry->Register(u"https", installed);
  SetCredentialCallback(&DefaultCredentials);
  return true;
}

void LcUHttpFileProtocol::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  if (LcUFileProtocolRegistry* registry = LcUFileProtocolRegistry::GetInstance()) {
    registry->Unregister(u"http");
    registry->Unregister(u"https");
  }
  LcUSizedObject::Delete(installed);
  LcUFileProtocolRegistry::Terminate();
  LcUMemory::Terminate();
}
