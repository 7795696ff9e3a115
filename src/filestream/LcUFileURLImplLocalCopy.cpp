#include "environment/LcUSysFile.h"
#include "filestream/LcUCacheFile.h"
#include "filestream/LcUCacheManager.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcULocalCopy.h"
#include "filestream/LcUSizedObject.h"

LcULocalCopy* LcUFileURLImpl::GetLocalCopy(const char16_t* url, bool forDownload, const char16_t* headers) {
  uint64_t size = 0;
  LcUFileProtocol* protocol = url ? LcUFileProtocolRegistry::GetInstance()->FindForURL(url) : nullptr;
  if (!protocol || !LcUFileProtocol::GetFileSize(url, &size, nullptr)) return nullptr;
  bool remote = protocol->IsRemote();
  if (remote && !protocol->CanDownload()) return nullptr;
  LcUCacheFile cache;
  if (forDownload && protocol->CanDownloadToSystemCache()) {
    if (!protocol->DownloadToCacheFile(url, nullptr, cache.path)) return nullptr;
  } else {
    LcUCacheManager* manager = LcUCacheManager::GetInstance();
    if (!manager || !manager->GetCacheFileForURL(url, protocol, headers, false, cache)) return nullptr;
  }
  if (cache.path.IsEmpty() || !LcUSysFile::Exists(cache.path.Get())) return nullptr;
  return LcUSizedObject::New<LcULocalCopy>(cache.path, int32_t(remote && !forDownload), cache.TakeLock());
}

void LcUFileURLImpl::ReleaseLocalCopy(LcULocalCopy* copy, bool deleteFile) {
  if (!copy) return;
  if (deleteFile && copy->deleteOnRelease) LcUSysFile::Delete(copy->path.Get(), true);
  LcUSizedObject::Delete(copy);
}

bool LcUFileURLImpl::FindBestCachedCopy(const char16_t* url, LcUString& path) {
  path.Clear();
  LcUCacheManager* manager = LcUCacheManager::GetInstance();
  LcUCacheManager::Entries entries;
  if (!manager || !manager->GetEntries(url, entries)) return false;
  const LcUCacheEntry* best = nullptr;
  // The listing has only complete entries.
  for (const LcUCacheEntry& entry : entries) {
    if (!entry.info.Has(LcUFileMetaData::eFILE_SIZE)) continue;
    bool keep = best && best->info.Has(LcUFileMetaData::eMODIFICATION_TIME) &&
                (!entry.info.Has(LcUFileMetaData::eMODIFICATION_TIME) ||
                 best->info.GetModificationTime() >= entry.info.GetModificationTime());
    if (!keep) best = &entry;
  }
  if (best) path = best->dataPath;
  return best != nullptr;
}
