#include <cstdio>

#include "TwfileCommands.h"
#include "TwfileConsole.h"
#include "TwfileSession.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysTime.h"
#include "filestream/LcUCacheDescription.h"
#include "filestream/LcUCacheEntry.h"
#include "filestream/LcUCacheManager.h"
#include "filestream/LcUFileMetaData.h"

namespace {
// One line an entry: its leaf, its bytes, whether every block is there and
// when it was last used.
void List(LcUCacheManager* cache) {
  LcUCacheManager::Entries entries;
  cache->GetAllEntries(entries);
  LcUString root;
  LcUCacheManager::GetRoot(root);
  TwfileConsole::ToDisplayPath(root);
  std::printf("cache ");
  TwfileConsole::Print(stdout, root.Get());
  std::printf(": %u entr%s\n", unsigned(entries.size()), entries.size() == 1 ? "y" : "ies");
  for (const LcUCacheEntry& entry : entries) {
    LcUString uri, leaf, dataName, dataPath, statePath, used;
    LcUFileMetaData info;
    bool described = LcUCacheDescription::Read(entry.descriptionPath.Get(), uri, info);
    LcUCacheManager::GetLeafFolder(uri.Get(), leaf);
    LcUCacheManager::GetDataFileName(uri.Get(), dataName);
    LcUSysFile::Join(entry.directory.Get(), dataName.Get(), dataPath);
    LcUSysFile::Join(entry.directory.Get(), LcUCacheEntry::kStateName, statePath);
    bool complete = described && info.Has(LcUFileMetaData::eFILE_SIZE) &&
                    LcUCacheEntry::IsComplete(dataPath.Get(), statePath.Get(), info.GetFileSize());
    LcUSysTime::FormatISOTime(entry.time, used);
    std::printf("  ");
    TwfileConsole::Print(stdout, described ? leaf.Get() : u"(no description)");
    std::printf("  %lld bytes  %s%s  last used ", static_cast<long long>(entry.bytes),
                complete ? "complete" : "partial", entry.locked ? " in use" : "");
    TwfileConsole::Print(stdout, used.Get());
    std::printf("\n");
  }
}
}  // namespace

TwfileOptions::Exit TwfileCommands::Cache(TwfileSession& session, const TwfileOptions& options) {
  LcUCacheManager* cache = LcUCacheManager::GetInstance();
  if (!cache) return session.Fail(TwfileOptions::eFAILED, "no local cache");
  const char16_t* what = options.operands[0].Get();
  if (LcUString::Equal(what, u"list")) {
    List(cache);
  } else if (LcUString::Equal(what, u"evict")) {
    cache->Evict();
    List(cache);
  } else {
    cache->Evict(0, 0);
    List(cache);
  }
  return TwfileOptions::eDONE;
}
