#pragma once
#include <cstdint>

#include "serial/LcUStreamSink.h"

// A sink over one block of its own: writing fills it and hands each full
// block to WriteBlock; reading refills it from ReadBlock.
class LcUStreamBlockSink : public LcUStreamSink {
public:
  enum : uint32_t { eDEFAULT_BLOCK_SIZE = 65536 };

  LcUStreamBlockSink(uint32_t blockSize, uint32_t padLastBlock);
  ~LcUStreamBlockSink() override;
  LcUStreamBlockSink(const LcUStreamBlockSink&) = delete;
  LcUStreamBlockSink& operator=(const LcUStreamBlockSink&) = delete;

  bool WriteBegin(LcUStream* stream) override;
  bool GetWriteBlock(uint8_t** block, uint32_t* size) override;
  bool CommitWrite(uint32_t count) override;
  bool WriteEnd() override;
  bool ReadBegin(LcUStream* stream) override;
  int32_t GetReadBlock(const uint8_t** block, uint32_t* size) override;
  bool ConsumeRead(uint32_t count) override;

  virtual bool WriteBlock(const uint8_t* data, uint32_t count) = 0;
  // 0 and a count of 0 is the end of the data.
  virtual int32_t ReadBlock(uint8_t* data, uint32_t* count) = 0;

protected:
  // For a subclass's Flush: the bytes written so far in this block, which
  // then counts as empty again; null when there are none.
  uint8_t* TakePending(uint32_t* size);

  uint32_t blockSize;
  uint32_t padLastBlock;
  uint8_t* block = nullptr;
  uint8_t* cursor = nullptr;
  uint32_t validBytes = 0;
};
