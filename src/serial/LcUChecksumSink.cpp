#include "serial/LcUChecksumSink.h"

LcUChecksumSink::LcUChecksumSink() : LcUStreamBlockSink(eDEFAULT_BLOCK_SIZE, 0) {}

bool LcUChecksumSink::WriteBegin(LcUStream* stream) {
  checksum.Init();
  return LcUStreamBlockSink::WriteBegin(stream);
}

bool LcUChecksumSink::WriteBlock(const uint8_t* data, uint32_t count) {
  checksum.Add(data, count);
  return true;
}

bool LcUChecksumSink::Flush() {
  uint32_t size;
  if (uint8_t* pending = TakePending(&size)) checksum.Add(pending, size);
  return true;
}

bool LcUChecksumSink::WriteEnd() {
  if (!LcUStreamBlockSink::WriteEnd()) return false;
  result = checksum.GetResult();
  return true;
}

bool LcUChecksumSink::ReadBegin(LcUStream*) {
  return false;
}

bool LcUChecksumSink::ReadEnd() {
  return false;
}

int32_t LcUChecksumSink::ReadBlock(uint8_t*, uint32_t*) {
  return 2;
}
