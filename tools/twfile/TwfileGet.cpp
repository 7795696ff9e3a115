#include <cstdio>

#include "TwfileCommands.h"
#include "TwfileProgress.h"
#include "TwfileReader.h"
#include "TwfileSession.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"
#include "serial/LcUSysCryptHash.h"
#include "serial/LcUSysCryptHashSHA256.h"

namespace {
// The hashes' provider, for the length of one copy.
struct HashComponent {
  HashComponent() : started(LcUSysCryptHash::Initialize()) {}
  ~HashComponent() { LcUSysCryptHash::Terminate(); }
  bool started;
};

void PrintDigest(const uint8_t (&digest)[LcUSysCryptHash::eSHA256_SIZE], const char16_t* path) {
  LcUStringA name;
  LcUString::UTF16ToUTF8(path, name, true);
  std::printf("sha256 ");
  for (uint8_t b : digest) std::printf("%02x", b);
  std::printf("  %s\n", name.Get() ? name.Get() : "");
}
}  // namespace

TwfileOptions::Exit TwfileCommands::Get(TwfileSession& session, const TwfileOptions& options) {
  const char16_t* url = options.operands[0].Get();
  const char16_t* path = options.operands[1].Get();
  HashComponent hashes;
  if (!hashes.started) return session.Fail(TwfileOptions::eFAILED, "no SHA-256 here");
  TwfileOptions::Exit failure = TwfileOptions::eFAILED;
  LcUFileURLFile* file = session.Open(url, failure);
  if (!file) return session.Fail(failure, "cannot open", url);
  LcUSysFileHandle output;
  if (!output.Open(path, LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                   LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_WRITE, LcUSysFileHandle::eHINT_SEQUENTIAL,
                   LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE)) {
    session.Engine()->Close(file);
    return session.Fail(TwfileOptions::eFAILED, "cannot create", path);
  }
  LcUSysCryptHashSHA256 hash;
  TwfileReader reader(session, file, 0, file->GetSize());
  TwfileOptions::Exit result = TwfileOptions::eDONE;
  {
    TwfileProgress progress(session.Engine(), url, file->GetSize());
    std::vector<uint8_t> piece;
    uint64_t done = 0;
    while (result == TwfileOptions::eDONE) {
      if (!reader.Next(piece, failure)) {
        result = failure;
      } else if (piece.empty()) {
        break;
      } else if (std::fwrite(piece.data(), 1, piece.size(), output.GetStream()) != piece.size()) {
        result = TwfileOptions::eFAILED;
      } else {
        hash.Add(piece.data(), uint32_t(piece.size()));
        progress.Advance(done += piece.size());
      }
    }
    progress.Finish();
  }
  session.Engine()->Close(file);
  bool closed = output.Close();
  if (result != TwfileOptions::eDONE || !closed) {
    LcUSysFile::Delete(path, true);
    return session.Fail(result == TwfileOptions::eDONE ? TwfileOptions::eFAILED : result, "cannot copy", url);
  }
  uint8_t digest[LcUSysCryptHash::eSHA256_SIZE];
  hash.Finish(digest, sizeof digest);
  PrintDigest(digest, path);
  return TwfileOptions::eDONE;
}
