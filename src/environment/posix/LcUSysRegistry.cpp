#include "environment/LcUSysRegistry.h"

#include <unistd.h>

#include <cstdlib>

#include "environment/LcUSysFile.h"
#include "environment/posix/LcUSysPath.h"
#include "environment/posix/LcUSysRegistryStore.h"
#include "foundation/LcUCriticalSection.h"

// Each hive is a database file, or a branch of one as on Windows: classes
// root is the user's Software\Classes, current config a branch of the
// machine's. TW_REGISTRY_DIR moves every file into one folder.
namespace {
struct HiveFile {
  const char16_t* file;
  int folder;  // the shell folder that holds it by default
  const char16_t* branch;
};

const HiveFile kHives[LcUSysRegistry::eHIVE_COUNT] = {
    {u"user.db", LcUSysFile::eFOLDER_APPDATA, u"Software\\Classes"},
    {u"machine.db", LcUSysFile::eFOLDER_COMMON_APPDATA, u"System\\CurrentControlSet\\Hardware Profiles\\Current"},
    {u"user.db", LcUSysFile::eFOLDER_APPDATA, nullptr},
    {u"machine.db", LcUSysFile::eFOLDER_COMMON_APPDATA, nullptr},
    {u"users.db", LcUSysFile::eFOLDER_COMMON_APPDATA, nullptr},
};

// The hive's file; the folder is made as needed.
LcUSysRegistryStore* OpenStore(const HiveFile& place) {
  LcUString folder;
  const char* moved = std::getenv("TW_REGISTRY_DIR");
  if (moved && *moved) {
    LcUString::UTF8ToUTF16(moved, -1, folder);
  } else {
    if (!LcUSysFile::GetShellFolder(place.folder, folder)) return nullptr;
    LcUSysFile::Join(folder.Get(), u"twregistry", folder);
  }
  if (!LcUSysFile::CreateDirectories(folder.Get())) return nullptr;
  LcUString path;
  LcUSysFile::Join(folder.Get(), place.file, path);
  LcUStringA native;
  if (!LcUSysPath::ToNative(path.Get(), native)) return nullptr;
  return LcUSysRegistryStore::Open(native.Get());
}

// The variables that place the files: while they stand, so does each
// hive's store, and finding it costs no file system calls and no
// allocation. A child of fork() finds its own.
const char* const kPlacing[] = {"TW_REGISTRY_DIR", "XDG_CONFIG_HOME", "HOME"};
constexpr int kPlacingCount = sizeof kPlacing / sizeof kPlacing[0];

struct KnownStore {
  LcUStringA placing[kPlacingCount];
  pid_t owner = 0;
  LcUSysRegistryStore* store = nullptr;

  bool Stands() const {
    if (!store || owner != getpid()) return false;
    for (int i = 0; i < kPlacingCount; ++i) {
      const char* value = std::getenv(kPlacing[i]);
      if (!LcUStringA::Equal(placing[i].Get() ? placing[i].Get() : "", value ? value : "")) return false;
    }
    return true;
  }
  // A store left behind by a parent before fork() is not this process's to close.
  void Take(LcUSysRegistryStore* opened) {
    if (store && owner == getpid()) store->Release();
    for (int i = 0; i < kPlacingCount; ++i) placing[i].Assign(std::getenv(kPlacing[i]));
    owner = getpid();
    store = opened;
  }
};
KnownStore knownStores[LcUSysRegistry::eHIVE_COUNT];
LcUCriticalSection knownLock;

// The hive's store, with key rewritten below the hive's branch.
LcUSysRegistryStore* StoreOf(int hive, const char16_t*& key, LcUString& branchKey) {
  if (hive < 0 || hive >= LcUSysRegistry::eHIVE_COUNT) return nullptr;
  const HiveFile& place = kHives[hive];
  if (place.branch) {
    LcUSysRegistry::JoinKey(place.branch, key && *key ? key : nullptr, nullptr, nullptr, branchKey);
    key = branchKey.Get();
  }
  knownLock.Lock();
  KnownStore& known = knownStores[hive];
  if (!known.Stands()) known.Take(OpenStore(place));
  LcUSysRegistryStore* store = known.store;
  knownLock.Unlock();
  return store;
}
}  // namespace

void LcUSysRegistry::CloseAll() {
  knownLock.Lock();
  for (KnownStore& known : knownStores) {
    known.Take(nullptr);
    for (LcUStringA& value : known.placing) value.Free();
  }
  knownLock.Unlock();
}

bool LcUSysRegistry::CreateKey(int hive, const char16_t* key) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->CreateKey(key);
}

bool LcUSysRegistry::KeyExists(int hive, const char16_t* key) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->KeyExists(key);
}

bool LcUSysRegistry::DeleteKey(int hive, const char16_t* key, bool recursive) {
  // A hive's own root, or its branch, is not a key that can go.
  if (!key || !*key) return false;
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->DeleteKey(key, recursive);
}

bool LcUSysRegistry::DeleteValue(int hive, const char16_t* key, const char16_t* name) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->DeleteValue(key, name);
}

bool LcUSysRegistry::GetKeyInfo(int hive, const char16_t* key, uint32_t* subKeyCount, uint32_t* maxSubKeyLength,
                                uint32_t* valueCount, uint32_t* maxValueNameLength, uint32_t* maxValueLength,
                                int64_t* lastWriteTime) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  LcUSysRegistryStore::KeyInfo info;
  if (!store || !store->GetKeyInfo(key, info)) return false;
  if (subKeyCount) *subKeyCount = info.subKeyCount;
  if (maxSubKeyLength) *maxSubKeyLength = info.maxSubKeyLength;
  if (valueCount) *valueCount = info.valueCount;
  if (maxValueNameLength) *maxValueNameLength = info.maxValueNameLength;
  if (maxValueLength) *maxValueLength = info.maxValueLength;
  if (lastWriteTime) *lastWriteTime = info.lastWriteTime;
  return true;
}

bool LcUSysRegistry::GetSubKey(int hive, const char16_t* key, uint32_t index, LcUString* name, LcUString* className,
                               int64_t* lastWriteTime) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->GetSubKey(key, index, name, className, lastWriteTime);
}

bool LcUSysRegistry::GetValueName(int hive, const char16_t* key, uint32_t index, LcUString* name, uint32_t* type) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->GetValueName(key, index, name, type);
}

bool LcUSysRegistry::QueryValue(int hive, const char16_t* key, const char16_t* name, uint32_t /*accessExtra*/,
                                uint32_t* type, void* buffer, uint32_t* size) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->QueryValue(key, name, type, buffer, size);
}

bool LcUSysRegistry::SetValue(int hive, const char16_t* key, const char16_t* name, uint32_t type, const void* data,
                              uint32_t size) {
  LcUString branchKey;
  LcUSysRegistryStore* store = StoreOf(hive, key, branchKey);
  return store && store->SetValue(key, name, type, data, size);
}
