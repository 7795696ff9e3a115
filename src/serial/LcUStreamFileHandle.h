#pragma once
#include <cstdio>

#include "serial/LcUStreamBlockSink.h"

// A sink over a runtime FILE that the caller opened and will close.
class LcUStreamFileHandle : public LcUStreamBlockSink {
public:
  explicit LcUStreamFileHandle(FILE* file);

  bool Flush() override;
  bool WriteBlock(const uint8_t* data, uint32_t count) override;
  // A read error looks like the end of the data.
  int32_t ReadBlock(uint8_t* data, uint32_t* count) override;

protected:
  FILE* file;
};
