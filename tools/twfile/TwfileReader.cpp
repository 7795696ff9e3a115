#include "TwfileReader.h"

#include <algorithm>

#include "TwfileSession.h"
#include "filestream/LcUFileURLImpl.h"

TwfileReader::TwfileReader(TwfileSession& session, LcUFileURLFile* file, uint64_t offset, uint64_t length)
    : session(session), file(file), at(offset), end(offset + length), prepared(offset) {}

bool TwfileReader::Next(std::vector<uint8_t>& piece, TwfileOptions::Exit& failure) {
  LcUFileURLImpl* engine = session.Engine();
  uint64_t count = std::min<uint64_t>(ePIECE, end - at);
  piece.resize(size_t(count));
  if (count == 0) return true;
  if (prepared < end && prepared < at + eWINDOW / 2) {
    uint64_t window = std::min<uint64_t>(eWINDOW, end - prepared);
    engine->PrepareRead(file, prepared, window);
    prepared += window;
  }
  int32_t result = engine->Read(file, LcUFileURLImpl::eBLOCKING, at, piece.data(), uint32_t(count));
  if (result != LcUFileURLImpl::eDONE) {
    failure = result == LcUFileURLImpl::eUNAVAILABLE ? TwfileOptions::eUNAVAILABLE : TwfileOptions::eFAILED;
    return false;
  }
  at += count;
  return true;
}
