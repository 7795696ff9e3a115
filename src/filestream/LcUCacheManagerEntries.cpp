#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"
#include "filestream/LcUCacheDescription.h"
#include "filestream/LcUCacheManager.h"

// A link is neither followed nor counted: what it points at is not the
// cache's.
void LcUCacheManager::Scan(const LcUString& folder, bool withLocked, Entries& out) {
  LcUCacheEntry entry;
  entry.directory = folder;
  bool described = false;
  LcUString name, path;
  for (LcUSysFileIterator item(folder.Get()); item.IsValid(); item.Next()) {
    if (item.IsLink()) continue;
    item.GetPath(path);
    if (item.IsDirectory()) {
      Scan(path, withLocked, out);
      continue;
    }
    item.GetName(name);
    int64_t size = 0;
    if (LcUSysFile::GetSize(path.Get(), size)) entry.bytes += size;
    entry.files.push_back(path);
    if (name == LcUString(LcUCacheEntry::kLockName)) entry.locked = true;
    if (name != LcUString(LcUCacheEntry::kDescriptionName)) continue;
    described = true;
    entry.descriptionPath = path;
    int64_t accessed = 0;
    LcUSysFile::GetTimes(path.Get(), entry.time, accessed);
  }
  if (described && (withLocked || !entry.locked)) out.push_back(entry);
}

bool LcUCacheManager::GetEntries(const char16_t* url, Entries& out) {
  out.clear();
  LcUString root, leaf, folder, dataName, uri;
  if (!url || !GetRoot(root)) return false;
  GetLeafFolder(url, leaf);
  GetDataFileName(url, dataName);
  LcUSysFile::Join(root.Get(), leaf.Get(), folder);
  Entries found;
  Scan(folder, true, found);
  LcUString statePath;
  for (LcUCacheEntry& entry : found) {
    LcUSysFile::Join(entry.directory.Get(), dataName.Get(), entry.dataPath);
    LcUSysFile::Join(entry.directory.Get(), LcUCacheEntry::kStateName, statePath);
    if (!LcUCacheDescription::Read(entry.descriptionPath.Get(), uri, entry.info) || uri != LcUString(url) ||
        !LcUSysFile::Exists(entry.dataPath.Get()) ||
        (entry.info.Has(LcUFileMetaData::eFILE_SIZE) &&
         !LcUCacheEntry::IsComplete(entry.dataPath.Get(), statePath.Get(), entry.info.GetFileSize())))
      continue;
    out.push_back(entry);
  }
  return !out.empty();
}

bool LcUCacheManager::GetAllEntries(Entries& out) {
  out.clear();
  LcUString root;
  if (!GetRoot(root)) return false;
  Scan(root, true, out);
  return true;
}

bool LcUCacheManager::GetEntryFiles(const char16_t* url, const LcUFileMetaData& metadata, LcUString& directory,
                                    LcUString& path) {
  if (NameEntry(url, metadata, directory, path) && LcUSysFile::Exists(path.Get())) return true;
  directory.Clear();
  path.Clear();
  return false;
}
