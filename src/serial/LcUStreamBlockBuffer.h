#pragma once
#include <cstdint>

#include "serial/LcUStreamChunk.h"
#include "serial/LcUStreamSink.h"

// A sink over a chain of small chunks: it grows without ever copying what
// it holds, and stays readable after WriteEnd.
class LcUStreamBlockBuffer : public LcUStreamSink {
public:
  LcUStreamBlockBuffer() = default;
  ~LcUStreamBlockBuffer() override;
  LcUStreamBlockBuffer(const LcUStreamBlockBuffer&) = delete;
  LcUStreamBlockBuffer& operator=(const LcUStreamBlockBuffer&) = delete;

  bool WriteBegin(LcUStream* stream) override;
  bool GetWriteBlock(uint8_t** block, uint32_t* size) override;
  bool CommitWrite(uint32_t count) override;
  bool ReadBegin(LcUStream* stream) override;
  int32_t GetReadBlock(const uint8_t** block, uint32_t* size) override;
  bool ConsumeRead(uint32_t count) override;

  uint64_t GetSize() const;

private:
  friend class LcUStreamBlockData;
  void Clear();

  LcUStreamChunk* head = nullptr;
  LcUStreamChunk* tail = nullptr;
  uint32_t tailUsed = LcUStreamChunk::eDATA_SIZE;
  LcUStreamChunk* readChunk = nullptr;
  uint32_t readOffset = 0;
  uint32_t owned = 0;
};
