#include "environment/LcURegistry.h"

#include "environment/LcUResource.h"
#include "environment/LcUSysRegistry.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUTextBuffer.h"

LcUComponent LcURegistry::component;

namespace {
LcURegistryLocationProvider* provider = nullptr;

// The built-in texts stand until resources are up: the registry works before them.
const char16_t kFailedToRead[] =
    u"Error reading from registry entry: %s\\%s\\%s -- either repair/re-install Tarnwicket or ask your "
    u"administrator to provide your user account with sufficient permissions for the key %s\\%s.";
const char16_t kFailedToWrite[] =
    u"Error writing to registry entry: %s\\%s\\%s -- please ask your administrator to provide your user account "
    u"with sufficient permissions for the key %s\\%s.";
const char16_t kDefaultEntryName[] = u"(Default)";

const char16_t* Text(const char* key, const char16_t* builtIn) {
  return LcUResource::IsInitialised() ? LcUResource::FindString(key, builtIn) : builtIn;
}

// Reaches the user: the read and write failures name the entry and its key.
void Tell(const char* key, const char16_t* builtIn, int hive, const char16_t* path, const char16_t* name) {
  LcUString hiveName;
  LcUString::AsciiToWide(LcUSysRegistry::HiveName(hive), hiveName);
  const char16_t* shownName = name ? name : Text("lcuregistry_default_registry_entry_name", kDefaultEntryName);
  LcUString message;
  message.Format(Text(key, builtIn), hiveName.Get(), path, shownName, hiveName.Get(), path);
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(message.Get(), narrow, true);
  LcUError::FatalText(narrow.Get(), false);
}

// A location joined with a key, built without the allocator on the read path.
using KeyPath = LcUTextBuffer<>;
bool MakePath(const char16_t* location, const char16_t* key, KeyPath& path) {
  return path.Append(location) && (!key || (path.Append(u"\\", 1) && path.Append(key)));
}

bool Query(int hive, const char16_t* path, const char16_t* name, uint32_t type, void* buffer, uint32_t size,
           uint32_t& stored, bool& typed) {
  uint32_t storedType = 0;
  stored = size;
  if (!LcUSysRegistry::GetValue(hive, path, name, &storedType, buffer, &stored)) return false;
  typed = storedType == type;
  return true;
}
}  // namespace

bool LcURegistry::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcURegistry") != 1) return true;
  LcUString::Initialize();
  LcUSysRegistry::Initialize();
  return true;
}

void LcURegistry::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUSysRegistry::Terminate();
  LcUString::Terminate();
}

LcURegistryLocationProvider* LcURegistry::SetRegistryLocationProvider(LcURegistryLocationProvider* next) {
  LcURegistryLocationProvider* previous = provider;
  provider = next;
  return previous;
}

LcURegistryLocationProvider* LcURegistry::GetRegistryLocationProvider() {
  return provider;
}

int32_t LcURegistry::GetLocationCount() {
  return provider ? provider->GetLocationCount() : 0;
}

const char16_t* LcURegistry::GetLocation(int32_t index) {
  return provider && index >= 0 && index < provider->GetLocationCount() ? provider->GetLocation(index) : nullptr;
}

const char16_t* LcURegistry::GetRootKey() {
  return GetLocation(0);
}

void LcURegistry::MakeKeyPath(const char16_t* parent, const char16_t* child, LcUString& out) {
  LcUSysRegistry::JoinKey(parent, child, nullptr, nullptr, out);
}

bool LcURegistry::RegRead(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t type, void* buffer,
                          uint32_t& size) {
  int hive = HiveOf(flags);
  KeyPath path;
  bool placed = GetRootKey() && MakePath(GetRootKey(), key, path);
  uint32_t stored = 0;
  bool typed = false;
  // A value of the wrong type where it belongs is missing, and older
  // versions are not asked then.
  bool present = placed && Query(hive, path.Get(), name, type, buffer, size, stored, typed);
  if (present && typed) {
    size = stored;
    return true;
  }
  if (!present && (flags & eREG_INHERIT) && GetLocationCount() >= 2) {
    for (int32_t i = 1; i < GetLocationCount(); ++i) {
      KeyPath older;
      if (!MakePath(GetLocation(i), key, older) || !Query(hive, older.Get(), name, type, buffer, size, stored, typed) ||
          !typed)
        continue;
      size = stored;
      if (!(flags & eREG_WRITE_BACK)) return true;
      return RegWrite(key, name, flags, type, buffer, stored);
    }
  }
  if (flags & (eREG_WRITE_BACK | eREG_QUIET)) return false;
  Tell("lcuregistry_failed_to_read_entry", kFailedToRead, hive, path.Get(), name);
  return false;
}

bool LcURegistry::RegWrite(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t type,
                           const void* data, uint32_t size) {
  int hive = HiveOf(flags);
  KeyPath path;
  // Location 0 only: older versions are never written.
  if (GetRootKey() && MakePath(GetRootKey(), key, path) &&
      LcUSysRegistry::SetValue(hive, path.Get(), name, type, data, size))
    return true;
  Tell("lcuregistry_failed_to_write_entry", kFailedToWrite, hive, path.Get(), name);
  return false;
}

bool LcURegistry::CreateUserKey(const char16_t* key) {
  LcUString path;
  MakeKeyPath(GetRootKey(), key, path);
  return GetRootKey() && LcUSysRegistry::CreateKey(LcUSysRegistry::eHIVE_CURRENT_USER, path.Get());
}

bool LcURegistry::DeleteAllUserKeys() {
  bool deleted = true;
  for (int32_t i = 0; i < GetLocationCount(); ++i)
    deleted = LcUSysRegistry::DeleteKey(LcUSysRegistry::eHIVE_CURRENT_USER, GetLocation(i), true) && deleted;
  return deleted;
}

bool LcURegistry::DeleteUserKey(const char16_t* path) {
  return LcUSysRegistry::DeleteKey(LcUSysRegistry::eHIVE_CURRENT_USER, path, true);
}
