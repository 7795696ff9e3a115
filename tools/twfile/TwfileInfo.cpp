#include <cstdio>

#include "TwfileCommands.h"
#include "TwfileConsole.h"
#include "TwfileSession.h"
#include "filestream/LcUCacheManager.h"
#include "environment/LcUSysTime.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"

namespace {
void PrintLine(const char* label, const char16_t* value) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(value, narrow, true);
  std::printf("%-10s %s\n", label, narrow.Get() ? narrow.Get() : "");
}
}  // namespace

TwfileOptions::Exit TwfileCommands::Info(TwfileSession& session, const TwfileOptions& options) {
  const char16_t* url = options.operands[0].Get();
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->FindForURL(url);
  LcUFileMetaData info;
  if (!protocol) return session.Fail(TwfileOptions::eFAILED, "no protocol for", url);
  if (!protocol->GetFileInfo(url, info))
    return session.Fail(TwfileSession::Unreachable(url) ? TwfileOptions::eUNAVAILABLE : TwfileOptions::eFAILED,
                        "no information about", url);
  PrintLine("url", url);
  LcUString text;
  if (info.Has(LcUFileMetaData::eFILE_SIZE)) {
    text.Format(u"%llu", static_cast<unsigned long long>(info.GetFileSize()));
    PrintLine("size", text.Get());
  }
  if (info.Has(LcUFileMetaData::eREVISION_ID)) PrintLine("revision", info.GetRevisionId().Get());
  if (info.Has(LcUFileMetaData::eMODIFICATION_TIME) && LcUSysTime::FormatISOTime(info.GetModificationTime(), text))
    PrintLine("modified", text.Get());
  LcUString directory, path;
  LcUCacheManager* cache = LcUCacheManager::GetInstance();
  if (cache && cache->GetEntryFiles(url, info, directory, path)) {
    TwfileConsole::ToDisplayPath(directory);
    PrintLine("cached in", directory.Get());
  } else {
    PrintLine("cached in", u"(nowhere)");
  }
  return TwfileOptions::eDONE;
}
