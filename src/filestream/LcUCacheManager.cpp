#include "filestream/LcUCacheManager.h"

#include <initializer_list>

#include "environment/LcUAppInfo.h"
#include "environment/LcUSysFile.h"
#include "filestream/LcUCacheDescription.h"
#include "filestream/LcUCacheOptions.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUURL.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"
#include "options/LcUOption.h"
#include "serial/LcUGuid.h"
#include "serial/LcUJsonStream.h"
#include "serial/LcUSysCryptHash.h"

LcUComponent LcUCacheManager::component;

namespace {
LcUCacheManager* instance = nullptr;
// Each platform hash starts and stops a counted component, which is not
// for several threads at once; entries are named on open workers too.
LcUCriticalSection hashing;
const int32_t kLeafLimit = 100;
const int32_t kExtensionLimit = 16;

// Names Windows keeps for devices, whatever follows a dot: "nul.txt" too.
bool IsDeviceName(const LcUString& name) {
  int32_t dot = name.FindChar(u'.');
  LcUString stem(name.Get(), dot < 0 ? name.Length() : dot);
  stem.ToUpper();
  stem.TrimTrailing(u" ");
  for (const char16_t* device : {u"CON", u"PRN", u"AUX", u"NUL"})
    if (stem == LcUString(device)) return true;
  if (stem.Length() != 4 || stem[3] < u'1' || stem[3] > u'9') return false;
  LcUString family(stem.Get(), 3);
  return family == LcUString(u"COM") || family == LcUString(u"LPT");
}

// A folder name that every platform holds and that stays below the root:
// no separator, no "." or "..", no device name, no control character, no
// trailing dot or space.
void LeafFolderName(const char16_t* url, LcUString& out) {
  LcUString leaf;
  LcUURL::GetLeafName(url, leaf);
  LcUSysFile::SanitiseFileName(leaf.Get(), out);
  if (out.Length() > kLeafLimit) out.SetLength(kLeafLimit);
  for (int32_t i = 0; i < out.Length(); ++i)
    if (out[i] < 32) out.SetAt(i, u'_');
  int32_t n = out.Length();
  if (n > 0 && (out[n - 1] == u'.' || out[n - 1] == u' ')) out.SetAt(n - 1, u'_');
  if (out.IsEmpty() || IsDeviceName(out)) {
    LcUString prefixed(u"_");
    prefixed.Append(out);
    out.Swap(prefixed);
  }
}
}  // namespace

bool LcUCacheManager::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUCacheManager") != 1) return true;
  bool started = LcUString::Initialize() && LcUOption::Initialize() && LcUJsonStream::Initialize() &&
                 LcUAppInfo::Initialize() && LcUSysCryptHash::Initialize();
  instance = new LcUCacheManager;
  LcUCacheOptions::Define();
  if (LcUCacheOptions::IsEmptyOnNextStart()) {
    instance->Evict(0, 0);
    LcUCacheOptions::ClearEmptyOnNextStart();
  }
  return started;
}

void LcUCacheManager::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUCacheOptions::Undefine();
  delete instance;
  instance = nullptr;
  LcUSysCryptHash::Terminate();
  LcUAppInfo::Terminate();
  LcUJsonStream::Terminate();
  LcUOption::Terminate();
  LcUString::Terminate();
}

LcUCacheManager* LcUCacheManager::GetInstance() {
  return instance;
}

bool LcUCacheManager::GetRoot(LcUString& out) {
  LcUString data;
  if (!LcUAppInfo::GetDirectory(0, data) || data.IsEmpty()) {
    out.Clear();
    return false;
  }
  LcUSysFile::Join(data.Get(), u"LocalCache", out);
  return true;
}

bool LcUCacheManager::NameEntry(const char16_t* url, const LcUFileMetaData& metadata, LcUString& directory,
                                LcUString& dataPath) {
  directory.Clear();
  dataPath.Clear();
  LcUStringA description;
  LcUString root, leaf;
  if (!metadata.Has(LcUFileMetaData::eMODIFICATION_TIME | LcUFileMetaData::eREVISION_ID) || !GetRoot(root) ||
      !LcUCacheDescription::Compose(url, metadata, description))
    return false;
  // URL namespace of RFC 4122.
  LcUGuid nameSpace, guid;
  nameSpace.FromText("6ba7b811-9dad-11d1-80b4-00c04fd430c8");
  hashing.Lock();
  LcUGuid::MakeNamed(guid, nameSpace, description.Get());
  hashing.Unlock();
  if (guid.IsNil()) return false;
  LcUString guidText, name;
  guid.ToText(guidText);
  GetLeafFolder(url, leaf);
  LcUSysFile::Join3(root.Get(), leaf.Get(), guidText.Get(), directory);
  GetDataFileName(url, name);
  LcUSysFile::Join(directory.Get(), name.Get(), dataPath);
  return true;
}

void LcUCacheManager::GetLeafFolder(const char16_t* url, LcUString& out) {
  LeafFolderName(url, out);
}

void LcUCacheManager::GetDataFileName(const char16_t* url, LcUString& out) {
  LcUString leaf, extension;
  LeafFolderName(url, leaf);
  LcUSysFile::SplitExtension(leaf.Get(), nullptr, &extension);
  if (extension.Length() > kExtensionLimit) extension.SetLength(kExtensionLimit);
  out.Assign(u"data");
  out.Append(u"_.");
  out.Append(extension);
  // A dot last is dropped by Windows; the name stays the same everywhere.
  if (extension.IsEmpty()) out.SetLength(out.Length() - 1);
}

void LcUCacheManager::MarkInUse(const LcUString& directory, const LcUString& descriptionPath) {
  lock.Lock();
  int32_t* count = inUse.Find(directory.Get());
  if (count)
    ++*count;
  else
    inUse.Set(directory.Get(), 1);
  while (!deleting.IsEmpty() && deleting == descriptionPath) deleted.Wait(lock);
  lock.Unlock();
}

void LcUCacheManager::UnmarkInUse(const LcUString& directory) {
  lock.Lock();
  int32_t* count = inUse.Find(directory.Get());
  if (count && --*count == 0) inUse.Erase(directory.Get());
  lock.Unlock();
}
