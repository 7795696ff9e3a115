#pragma once
#include <cstdint>
#include <vector>

#include "TwfileOptions.h"

class LcUFileURLFile;
class TwfileSession;

// Reads a range of an open file in pieces, preparing a window ahead of
// the piece being read so that the download workers stay busy.
class TwfileReader {
public:
  enum : uint32_t { ePIECE = 1u << 20, eWINDOW = 32u << 20 };
  TwfileReader(TwfileSession& session, LcUFileURLFile* file, uint64_t offset, uint64_t length);
  // The next piece, empty at the end; false on a failure, the code in failure.
  bool Next(std::vector<uint8_t>& piece, TwfileOptions::Exit& failure);

private:
  TwfileSession& session;
  LcUFileURLFile* file;
  uint64_t at, end, prepared;
};
