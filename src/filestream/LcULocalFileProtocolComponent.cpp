#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcULocalFileProtocol.h"
#include "filestream/LcUSizedObject.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcULocalFileProtocol::component;

namespace {
LcULocalFileProtocol* installed = nullptr;
}

// The component keeps its historic name though it installs local files.
bool LcULocalFileProtocol::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUHttpLocalProtocol") != 1) return true;
  LcUMemory::Initialize();
  LcUFileProtocolRegistry::Initialize();
  installed = LcUSizedObject::New<LcULocalFileProtocol>();
  LcUFileProtocolRegistry* registry = LcUFileProtocolRegistry::GetInstance();
  if (!installed || !registry) return false;
  registry->Register(u"file", installed);
  registry->SetDefault(u"file");
  return true;
}

void LcULocalFileProtocol::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  if (LcUFileProtocolRegistry* registry = LcUFileProtocolRegistry::GetInstance()) registry->Unregister(u"file");
  LcUSizedObject::Delete(installed);
  LcUFileProtocolRegistry::Terminate();
  LcUMemory::Terminate();
}
