#include <cstdio>

#include "TwfileCommands.h"
#include "TwfileConsole.h"
#include "TwfileReader.h"
#include "TwfileSession.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"

TwfileOptions::Exit TwfileCommands::Cat(TwfileSession& session, const TwfileOptions& options) {
  const char16_t* url = options.operands[0].Get();
  TwfileOptions::Exit failure = TwfileOptions::eFAILED;
  LcUFileURLFile* file = session.Open(url, failure);
  if (!file) return session.Fail(failure, "cannot open", url);
  uint64_t size = file->GetSize();
  uint64_t offset = std::min<uint64_t>(uint64_t(options.offset), size);
  uint64_t length = options.length < 0 ? size - offset : std::min<uint64_t>(uint64_t(options.length), size - offset);
  TwfileConsole::SetBinary(stdout);
  TwfileReader reader(session, file, offset, length);
  std::vector<uint8_t> piece;
  TwfileOptions::Exit result = TwfileOptions::eDONE;
  while (reader.Next(piece, failure) && !piece.empty()) {
    if (std::fwrite(piece.data(), 1, piece.size(), stdout) != piece.size()) {
      result = session.Fail(TwfileOptions::eFAILED, "cannot write to standard output");
      break;
    }
  }
  if (result == TwfileOptions::eDONE && !piece.empty()) result = session.Fail(failure, "cannot read", url);
  session.Engine()->Close(file);
  if (std::fflush(stdout) != 0 && result == TwfileOptions::eDONE)
    result = session.Fail(TwfileOptions::eFAILED, "cannot write to standard output");
  return result;
}
