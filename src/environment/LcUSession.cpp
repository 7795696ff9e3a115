#include "environment/LcUSession.h"

#include "environment/LcUAppInfo.h"
#include "environment/LcURegistry.h"
#include "environment/LcUSessionRegistryLocationProvider.h"
#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUSession::component;

namespace {
LcUSessionProvider* provider = nullptr;
bool providerOwned = false;
LcUSessionRecordList records;

// The defaults until the start; a trusted file's record after it. Made on
// first use: the allocator isn't up while statics are being made.
LcUSessionInfo& Info() {
  static LcUSessionInfo info;
  return info;
}
LcUSessionRegistryLocationProvider* locations = nullptr;
LcUSessionAppInfoProvider* appInfo = nullptr;

// The file's records, kept only when its single record is trusted.
void Load() {
  if (!provider->Load(records)) {
    LcUError::LogF("LcUSession: Failed to load session data.\n");
    records.clear();
    return;
  }
  if (records.size() != 1 || !provider->Verify(records.front())) {
    LcUError::LogF("LcUSession: Invalid file\n");
    records.clear();
    return;
  }
  Info().Apply(records.front());
}

const LcUSessionRecord* FirstRecord() {
  return records.empty() ? nullptr : &records.front();
}
}  // namespace

bool LcUSession::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSession") != 1) return true;
  LcURegistry::Initialize();
  LcUString::Initialize();
  LcUAppInfo::Initialize();
  if (!provider) {
    LcUString program, folder;
    if (LcUSysFile::GetExecutablePath(program)) LcUSysFile::GetDirectory(program.Get(), &folder, nullptr);
    SetSessionFolder(folder.Get() ? folder.Get() : u"");
  }
  Load();
  locations = new LcUSessionRegistryLocationProvider(Info(), FirstRecord());
  LcURegistry::SetRegistryLocationProvider(locations);
  appInfo = new LcUSessionAppInfoProvider(Info().company.Get(), Info().productLine.Get());
  LcUAppInfo::SetProvider(appInfo);
  return true;
}

void LcUSession::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUAppInfo::SetProvider(nullptr);
  delete appInfo;
  appInfo = nullptr;
  LcURegistry::SetRegistryLocationProvider(nullptr);
  delete locations;
  locations = nullptr;
  LcUSessionRecordList().swap(records);
  Info() = LcUSessionInfo();
  SetProvider(nullptr, false);
  LcUAppInfo::Terminate();
  LcUString::Terminate();
  LcURegistry::Terminate();
}

LcUSessionProvider* LcUSession::SetProvider(LcUSessionProvider* next, bool owned) {
  LcUSessionProvider* previous = provider;
  if (providerOwned) {
    delete previous;
    previous = nullptr;
  }
  provider = next;
  providerOwned = owned;
  return previous;
}

void LcUSession::SetSessionFolder(const char16_t* folder) {
  SetProvider(new LcUSessionDefaultFileProvider(folder), true);
}

const LcUSessionInfo& LcUSession::GetInfo() {
  return Info();
}

const char16_t* LcUSession::GetProductLine() {
  return GetInfo().productLine.Get();
}

const char16_t* LcUSession::GetValue(const char16_t* key) {
  const LcUSessionRecord* record = FirstRecord();
  return record ? record->Find(key) : nullptr;
}

bool LcUSession::HasValue(const char16_t* key, const char16_t* value) {
  const char16_t* held = GetValue(key);
  return held && LcUString::Equal(held, value);
}

const char16_t* LcUSession::GetSessionPath() {
  return provider ? provider->GetPath() : nullptr;
}
