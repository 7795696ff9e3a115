#pragma once
#include "foundation/LcUChecksum.h"
#include "serial/LcUStreamBlockSink.h"

// Keeps nothing: it computes the Adler-32 of the bytes a stream writes.
// Reading from it is refused.
class LcUChecksumSink : public LcUStreamBlockSink {
public:
  LcUChecksumSink();

  bool WriteBegin(LcUStream* stream) override;
  bool Flush() override;
  bool WriteEnd() override;
  bool ReadBegin(LcUStream* stream) override;
  bool ReadEnd() override;
  bool WriteBlock(const uint8_t* data, uint32_t count) override;
  int32_t ReadBlock(uint8_t* data, uint32_t* count) override;

  uint32_t GetResult() const { return result; }

private:
  LcUChecksum checksum;
  uint32_t result = 1;
};
