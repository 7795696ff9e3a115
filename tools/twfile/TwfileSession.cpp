#include "TwfileSession.h"

#include <cstring>

#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "foundation/LcUSysError.h"

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

void Print(FILE* stream, const char16_t* text) {
  LcUStringA narrow;
  if (text && LcUString::UTF16ToUTF8(text, narrow, true) && narrow.Get()) std::fputs(narrow.Get(), stream);
}
}  // namespace

TwfileSession::TwfileSession(const TwfileOptions& options) : options(options) {
  if (options.trace) LcUSysError::SetTraceLevel(1);
  started = LcUFileURL::Initialize();
  engine = LcUFileURL::GetInstance();
  started = started && engine;
  logStart = LogLength();
}

TwfileSession::~TwfileSession() {
  if (options.trace) WriteTail(0, stderr);
  LcUFileURL::Terminate();
}

LcUFileURLFile* TwfileSession::Open(const char16_t* url, TwfileOptions::Exit& failure) {
  LcUFileURLFile* file = engine->Open(url, nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE);
  if (file) return file;
  failure = Unreachable(url) ? TwfileOptions::eUNAVAILABLE : TwfileOptions::eFAILED;
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
    Print(stderr, subject);
  }
  std::fputs("\n", stderr);
  // The trace goes out whole at the end; without it, the report is here.
  if (!options.trace) WriteTail(logStart, stderr);
  return code;
}
