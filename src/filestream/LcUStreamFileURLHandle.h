#pragma once
#include <cstdint>

#include "serial/LcUStreamBlockSink.h"

class LcUFileURLFile;

// A sink over a streamed file that the caller opened and will close; it
// reads and writes through the engine from position 0 on.
class LcUStreamFileURLHandle : public LcUStreamBlockSink {
public:
  // A length of 0 is the file's whole length.
  explicit LcUStreamFileURLHandle(LcUFileURLFile* fileURL, uint64_t length = 0);

  bool Flush() override;
  bool WriteBlock(const uint8_t* data, uint32_t count) override;
  // The engine's result: 3 when the data needs the network it lacks.
  int32_t ReadBlock(uint8_t* data, uint32_t* count) override;

private:
  LcUFileURLFile* fileURL;
  uint64_t position = 0;
  uint64_t length;
};
