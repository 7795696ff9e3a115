#include <algorithm>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileIterator.h"
#include "filestream/LcUCacheManager.h"
#include "filestream/LcUCacheOptions.h"

void LcUCacheManager::Evict() {
  Evict(LcUCacheOptions::GetMaxSize(), LcUCacheOptions::GetMinInactiveFiles());
}

void LcUCacheManager::Evict(int64_t maxSize, int32_t minInactive) {
  LcUString root;
  if (!GetRoot(root) || !LcUSysFile::IsDirectory(root.Get())) return;
  Entries all, inactive;
  Scan(root, true, all);
  int64_t total = 0;
  for (const LcUCacheEntry& entry : all) total += entry.bytes;
  Scan(root, false, inactive);
  if (minInactive < 0) minInactive = 0;
  if (inactive.size() <= size_t(minInactive)) return;
  std::stable_sort(inactive.begin(), inactive.end(), [](const LcUCacheEntry& a, const LcUCacheEntry& b) {
    return a.time < b.time;
  });
  int64_t limit = maxSize < 0 ? 0 : maxSize << 20;
  int64_t freed = 0;
  for (size_t i = 0; i + size_t(minInactive) < inactive.size() && total - freed > limit; ++i) {
    const LcUCacheEntry& entry = inactive[i];
    // The table holds folders and this asks by description, so the two
    // never meet: an entry in use is kept out by its lock file instead.
    lock.Lock();
    bool busy = inUse.Contains(entry.descriptionPath.Get());
    if (!busy) deleting = entry.descriptionPath;
    lock.Unlock();
    if (busy) continue;
    if (DeleteEntry(entry)) freed += entry.bytes;
    lock.Lock();
    deleting.Clear();
    deleted.WakeAll();
    lock.Unlock();
  }
  RemoveEmptyFolders(root);
}

// Only the files the scan found: a link or a file that came since stays.
// An entry locked since the scan is left alone.
bool LcUCacheManager::DeleteEntry(const LcUCacheEntry& entry) {
  LcUString lockPath;
  LcUSysFile::Join(entry.directory.Get(), LcUCacheEntry::kLockName, lockPath);
  if (LcUSysFile::Exists(lockPath.Get())) return false;
  for (const LcUString& file : entry.files) LcUSysFile::Delete(file.Get(), true);
  return true;
}

void LcUCacheManager::RemoveEmptyFolders(const LcUString& folder) {
  LcUString path;
  for (LcUSysFileIterator item(folder.Get()); item.IsValid(); item.Next()) {
    if (item.IsLink() || !item.IsDirectory()) continue;
    item.GetPath(path);
    RemoveEmptyFolders(path);
    LcUSysFile::RemoveFolder(path.Get());
  }
}
