#include "environment/LcUSysFile.h"
#include "filestream/LcUCacheDescription.h"
#include "filestream/LcUCacheFile.h"
#include "filestream/LcUCacheManager.h"
#include "filestream/LcUCacheOptions.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcUSizedObject.h"
#include "foundation/LcUError.h"

namespace {

// Null when another process, or another open here, holds the entry.
LcUFileLock* TakeLock(const LcUString& directory) {
  LcUFileLock* lock = LcUSizedObject::New<LcUFileLock>(directory.Get(), LcUCacheEntry::kLockName);
  if (lock && !lock->TryLock()) LcUSizedObject::Delete(lock);
  return lock;
}

// A complete state for a file that came down whole.
bool SaveCompleteState(const char16_t* path, uint64_t size) {
  LcUFileURLRemote remote(size, true);
  for (uint32_t i = 0; i < remote.blockCount; ++i) remote.MarkDownloaded(i);
  return remote.Save(path);
}
}  // namespace

bool LcUCacheManager::HaveExistingCache(const char16_t* url, const LcUFileMetaData& metadata,
                                        const LcUString& directory, const LcUString& dataPath, LcUFileLock*& lock) {
  LcUString descriptionPath, legacyPath, uri;
  LcUSysFile::Join(directory.Get(), LcUCacheEntry::kDescriptionName, descriptionPath);
  LcUSysFile::Join(directory.Get(), u"data", legacyPath);
  if (!LcUSysFile::Exists(dataPath.Get()) && LcUSysFile::Exists(legacyPath.Get()) &&
      !LcUSysFile::IsDirectory(legacyPath.Get()))
    LcUSysFile::Rename(legacyPath.Get(), dataPath.Get());
  if (!LcUSysFile::Exists(dataPath.Get())) return false;
  LcUFileMetaData described;
  if (!LcUCacheDescription::Read(descriptionPath.Get(), uri, described) || uri != LcUString(url) ||
      described != metadata)
    return false;
  LcUError::TraceF(1, u"LcUCacheManager::HaveExistingCache() : local_path = %ls\n", dataPath.Get());
  lock = TakeLock(directory);
  return lock != nullptr;
}

bool LcUCacheManager::GetCacheFile(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                                   const char16_t* headers, bool wantStream, LcUCacheFile& out) {
  out.path.Clear();
  out.statePath.Clear();
  LcUSizedObject::Delete(out.lock);
  out.stream = out.loadState = out.temporary = false;
  bool canStream = wantStream && metadata.Has(LcUFileMetaData::eFILE_SIZE) && protocol->CanStream();
  bool canDownload = protocol->CanDownload();
  LcUString directory, dataPath, statePath, descriptionPath;
  if (LcUCacheOptions::IsEnabled() && NameEntry(url, metadata, directory, dataPath)) {
    LcUSysFile::Join(directory.Get(), LcUCacheEntry::kStateName, statePath);
    LcUSysFile::Join(directory.Get(), LcUCacheEntry::kDescriptionName, descriptionPath);
    bool hadState = LcUSysFile::Exists(statePath.Get());
    MarkInUse(directory, descriptionPath);
    bool done = false;
    if (HaveExistingCache(url, metadata, directory, dataPath, out.lock)) {
      // A copy handed out whole must be whole; a streamed one fills its
      // gaps itself.
      bool whole = !metadata.Has(LcUFileMetaData::eFILE_SIZE) ||
                   LcUCacheEntry::IsComplete(dataPath.Get(), statePath.Get(), metadata.GetFileSize());
      if (canStream || (canDownload && whole)) {
        out.path = dataPath;
        out.stream = canStream;
        out.loadState = canStream && hadState;
        if (canStream) out.statePath = statePath;
        done = true;
      }
    } else if (LcUSysFile::CreateDirectories(directory.Get())) {
      // Taken before anything of the entry is touched: whoever holds it
      // may be filling the data file.
      out.lock = TakeLock(directory);
    }
    if (!done && out.lock && (canStream || canDownload)) done = MakeEntry(url, protocol, metadata, dataPath, canStream, out);
    UnmarkInUse(directory);
    if (done) return true;
  }
  LcUSizedObject::Delete(out.lock);
  out.path.Clear();
  out.statePath.Clear();
  out.stream = out.loadState = false;
  return LcUCacheOptions::IsTemporaryEnabled() && MakeTemporary(url, protocol, metadata, canStream, out);
}

// With the entry's lock held.
bool LcUCacheManager::MakeEntry(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                                const LcUString& dataPath, bool canStream, LcUCacheFile& out) {
  LcUString directory, descriptionPath, statePath;
  LcUSysFile::GetDirectory(dataPath.Get(), &directory, nullptr);
  LcUSysFile::Join(directory.Get(), LcUCacheEntry::kDescriptionName, descriptionPath);
  LcUSysFile::Join(directory.Get(), LcUCacheEntry::kStateName, statePath);
  LcUStringA description;
  if (!LcUCacheDescription::Compose(url, metadata, description) ||
      !LcUCacheDescription::Write(descriptionPath.Get(), description))
    return false;
  // A state left from an earlier copy would speak for bytes now gone.
  LcUSysFile::Delete(statePath.Get(), true);
  LcUSysFile::Delete(dataPath.Get(), true);
  bool made = false;
  if (canStream) {
    made = LcUSysFile::Fill(dataPath.Get(), int64_t(metadata.GetFileSize()));
    out.statePath = statePath;
  } else if (protocol->CanDownload() && protocol->DownloadFile(url, dataPath.Get(), nullptr)) {
    int64_t size = 0;
    made = !metadata.Has(LcUFileMetaData::eFILE_SIZE) ||
           (LcUSysFile::GetSize(dataPath.Get(), size) && uint64_t(size) == metadata.GetFileSize() &&
            SaveCompleteState(statePath.Get(), metadata.GetFileSize()));
  }
  if (!made) {
    LcUSysFile::Delete(dataPath.Get(), true);
    out.statePath.Clear();
    return false;
  }
  out.path = dataPath;
  out.stream = canStream;
  return true;
}

bool LcUCacheManager::MakeTemporary(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                                    bool canStream, LcUCacheFile& out) {
  out.temporary = true;
  if (canStream) {
    out.stream = true;
    return LcUSysFile::MakeTempFile(nullptr, u"tw", nullptr, int64_t(metadata.GetFileSize()), out.path);
  }
  if (!protocol->CanDownload() || !LcUSysFile::MakeTempFile(nullptr, u"tw", nullptr, 0, out.path)) return false;
  if (protocol->DownloadFile(url, out.path.Get(), nullptr)) return true;
  LcUSysFile::Delete(out.path.Get(), true);
  out.path.Clear();
  return false;
}

bool LcUCacheManager::GetCacheFileForURL(const char16_t* url, LcUFileProtocol* protocol, const char16_t* headers,
                                         bool wantStream, LcUCacheFile& out) {
  LcUFileMetaData metadata;
  return protocol && protocol->GetFileInfo(url, metadata) &&
         GetCacheFile(url, protocol, metadata, headers, wantStream, out);
}
