#include "filestream/LcUFileURL.h"

#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcULocalFileProtocol.h"
#include "filestream/LcUNetworkConnection.h"
#include "filestream/LcUSizedObject.h"
#include "foundation/LcUActionQueue.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUFileURL::component;

namespace {
LcUFileURLImpl* engine = nullptr;
int32_t cacheMode = 0;
}  // namespace

// The engine is built before the mode is taken, so a new mode tells only
// at a later start.
bool LcUFileURL::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUFileURL") != 1) return true;
  bool started = LcUString::Initialize() && LcULocalFileProtocol::Initialize() && LcUActionQueue::Initialize() &&
                 LcUNetworkConnection::Initialize();
  engine = LcUSizedObject::New<LcUFileURLImpl>(cacheMode);
  return started && engine;
}

void LcUFileURL::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUSizedObject::Delete(engine);
  LcUNetworkConnection::Terminate();
  LcUActionQueue::Terminate();
  LcULocalFileProtocol::Terminate();
  LcUString::Terminate();
}

LcUFileURLImpl* LcUFileURL::GetInstance() {
  return engine;
}

void LcUFileURL::SetCacheMode(int32_t mode) {
  cacheMode = mode;
}

int32_t LcUFileURL::GetCacheMode() {
  return cacheMode;
}
