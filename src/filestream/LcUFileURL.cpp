#include "filestream/LcUFileURL.h"

#include "filestream/LcUCacheManager.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "filestream/LcULocalFileProtocol.h"
#include "filestream/LcUNetworkConnection.h"
#include "options/LcUOption.h"
#include "foundation/LcUActionQueue.h"
#include "foundation/LcUPage.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUFileURL::component;

namespace {
LcUFileURLImpl* engine = nullptr;
int32_t cacheMode = 0;
const char* const kCacheModePath = "general.file_streaming.cache_mode";
}  // namespace

// The engine is built before the mode is taken, so a new mode tells only
// at a later start.
bool LcUFileURL::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUFileURL") != 1) return true;
  bool started = LcUString::Initialize() && LcUOption::Initialize() && LcULocalFileProtocol::Initialize() &&
                 LcUHttpFileProtocol::Initialize() && LcUPage::Initialize() && LcUActionQueue::Initialize() &&
                 LcUCacheManager::Initialize() && LcUNetworkConnection::Initialize();
  engine = new LcUFileURLImpl(cacheMode);
  // Level 1, not offered to users.
  LcUOption::DefineInt32(kCacheModePath, cacheMode, 1, 8);
  LcUOption::TryGetInt32(kCacheModePath, cacheMode);
  return started && engine;
}

void LcUFileURL::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  delete engine;
  engine = nullptr;
  LcUNetworkConnection::Terminate();
  LcUCacheManager::Terminate();
  LcUActionQueue::Terminate();
  LcUPage::Terminate();
  LcUHttpFileProtocol::Terminate();
  LcULocalFileProtocol::Terminate();
  LcUOption::Undefine(kCacheModePath);
  LcUOption::Terminate();
  LcUString::Terminate();
}

LcUFileURLImpl* LcUFileURL::GetInstance() {
  return engine;
}

