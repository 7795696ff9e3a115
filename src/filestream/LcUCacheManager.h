#pragma once
#include <cstdint>
#include <vector>

#include "filestream/LcUCacheEntry.h"
#include "foundation/LcUAllocator.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUCondition.h"
#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUString.h"
#include "serial/LcUDict.h"

class LcUCacheFile;
class LcUFileLock;
class LcUFileMetaData;
class LcUFileProtocol;

// Gives each version of each remote file a folder under "LocalCache" in
// the application's data folder, with its data, the state of its blocks
// and a description by which a later run knows it again; and keeps the
// folder within its size.
class LcUCacheManager {
public:
  using Entries = std::vector<LcUCacheEntry, LcUAllocator<LcUCacheEntry>>;

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Null unless the component runs.
  static LcUCacheManager* GetInstance();

  // The "LocalCache" folder; false without an application data folder.
  static bool GetRoot(LcUString& out);
  // The entry's folder and data file for one version of a file; false
  // when the version has neither a time nor a revision id.
  static bool NameEntry(const char16_t* url, const LcUFileMetaData& metadata, LcUString& directory,
                        LcUString& dataPath);

  // The entry folders of a URL lie in this folder under the root.
  static void GetLeafFolder(const char16_t* url, LcUString& out);
  // "data", "_." and the URL's extension.
  static void GetDataFileName(const char16_t* url, LcUString& out);

  // True when out.path is usable.
  bool GetCacheFile(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                    const char16_t* headers, bool wantStream, LcUCacheFile& out);
  bool GetCacheFileForURL(const char16_t* url, LcUFileProtocol* protocol, const char16_t* headers, bool wantStream,
                          LcUCacheFile& out);
  // The complete entries of the URL's leaf: a sound description naming
  // this URL, the data file at the described size, every block present.
  bool GetEntries(const char16_t* url, Entries& out);
  // Every entry under the root, complete or not, locked or not.
  bool GetAllEntries(Entries& out);
  // The entry of one version, if its data file is there.
  bool GetEntryFiles(const char16_t* url, const LcUFileMetaData& metadata, LcUString& directory, LcUString& path);
  // Applies the limits of the options now.
  void Evict();
  // maxSize in MiB; the newest minInactive unlocked entries stay.
  void Evict(int64_t maxSize, int32_t minInactive);

private:
  LcUCacheManager() = default;
  bool HaveExistingCache(const char16_t* url, const LcUFileMetaData& metadata, const LcUString& directory,
                         const LcUString& dataPath, LcUFileLock*& lock);
  bool MakeEntry(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                 const LcUString& dataPath, bool canStream, LcUCacheFile& out);
  static bool MakeTemporary(const char16_t* url, LcUFileProtocol* protocol, const LcUFileMetaData& metadata,
                            bool canStream, LcUCacheFile& out);
  void MarkInUse(const LcUString& directory, const LcUString& descriptionPath);
  void UnmarkInUse(const LcUString& directory);
  // Every entry under folder, without following links.
  static void Scan(const LcUString& folder, bool withLocked, Entries& out);
  static void RemoveEmptyFolders(const LcUString& folder);
  // False when the entry was locked since the scan.
  bool DeleteEntry(const LcUCacheEntry& entry);

  LcUString deleting;
  LcUDict<LcUString, int32_t> inUse;
  LcUCriticalSection lock;
  LcUCondition deleted;
};
