#include "TwfileSession.h"

#include <cstring>

#include "TwfileConsole.h"
#include "environment/LcUAppInfo.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "foundation/LcUSysError.h"
#include "options/LcUOption.h"

namespace {
struct LogTail {
  size_t skip;
  FILE* stream;
};

// The log from skip bytes on; pieces come in order.
void WriteTail(size_t skip, FILE* stream) {
  LogTail tail{skip, stream};
  LcUSysError::ReplayLog(
      [](const char* piece, void* context) {
        LogTail* t = static_cast<LogTail*>(context);
        size_t length = std::strlen(piece);
        if (t->skip >= length) {
          t->skip -= length;
          return;
        }
        std::fputs(piece + t->skip, t->stream);
        t->skip = 0;
      },
      &tail);
}

size_t LogLength() {
  size_t length = 0;
  LcUSysError::ReplayLog([](const char* piece, void* context) { *static_cast<size_t*>(context) += std::strlen(piece); },
                         &length);
  return length;
}

// The folder the cache lives under: the user's, or the one asked for.
class TwfileAppInfo : public LcUFixedAppInfoProvider {
public:
  explicit TwfileAppInfo(const char16_t* where) { folder = where; }
};
}  // namespace

TwfileSession::TwfileSession(const TwfileOptions& options) : options(options) {
  if (options.trace) LcUSysError::SetTraceLevel(1);
  started = LcUFileURL::Initialize();
  engine = LcUFileURL::GetInstance();
  started = started && engine;
  if (options.cacheDir.IsNull())
    appInfo = new LcUHomeAppInfoProvider(u"twfile");
  else
    appInfo = new TwfileAppInfo(options.cacheDir.Get());
  previousAppInfo = LcUAppInfo::SetProvider(appInfo);
  if (options.noCache) LcUOption::SetBoolean("general.localcache.enabled", false);
  if (options.maxCacheMB >= 0) LcUOption::SetInt32("general.localcache.max_size", int32_t(options.maxCacheMB));
  logStart = LogLength();
}

TwfileSession::~TwfileSession() {
  if (options.trace) WriteTail(0, stderr);
  LcUAppInfo::SetProvider(previousAppInfo);
  delete appInfo;
  LcUFileURL::Terminate();
}

LcUFileURLFile* TwfileSession::Open(const char16_t* url, TwfileOptions::Exit& failure) {
  LcUFileURLFile* file = engine->Open(url, nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE);
  if (file) return file;
  if (!Unreachable(url)) {
    failure = TwfileOptions::eFAILED;
    return nullptr;
  }
  // No server: a complete copy in the cache serves instead.
  LcUString copy;
  if (engine->FindBestCachedCopy(url, copy) &&
      (file = engine->Open(copy.Get(), nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE)))
    return file;
  failure = TwfileOptions::eUNAVAILABLE;
  return nullptr;
}

bool TwfileSession::Unreachable(const char16_t* url) {
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->FindForURL(url);
  LcUFileMetaData info;
  return protocol && protocol->IsRemote() && !protocol->GetFileInfo(url, info) &&
         LcUHttpFileProtocol::GetLastInfoStatus() == 0;
}

TwfileOptions::Exit TwfileSession::Fail(TwfileOptions::Exit code, const char* what, const char16_t* subject) const {
  std::fprintf(stderr, "twfile: %s", what);
  if (subject) {
    std::fputs(" ", stderr);
    TwfileConsole::Print(stderr, subject);
  }
  std::fputs("\n", stderr);
  // The trace goes out whole at the end; without it, the report is here.
  if (!options.trace) WriteTail(logStart, stderr);
  return code;
}
