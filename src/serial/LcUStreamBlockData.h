#pragma once
#include <cstdint>

#include "serial/LcUStreamChunk.h"

class LcUStreamBlockBuffer;
class LcUStreamReader;
class LcUStreamWriter;

// Raw bytes kept in a form cheap to build and to copy: full chunks of a
// block buffer's size, then a tail of less than a chunk.
class LcUStreamBlockData {
public:
  LcUStreamBlockData() = default;
  ~LcUStreamBlockData() { Clear(); }
  LcUStreamBlockData(const LcUStreamBlockData&) = delete;
  LcUStreamBlockData& operator=(const LcUStreamBlockData&) = delete;

  void Clear();
  // By total size, then by bytes.
  bool Equals(const LcUStreamBlockData& other) const;
  bool CopyFrom(const LcUStreamBlockData& other);
  // Takes the buffer's chunks; the buffer is left empty.
  void TakeFrom(LcUStreamBlockBuffer& buffer);
  // Hands the bytes to the buffer, which can then be read; this is left empty.
  bool GiveTo(LcUStreamBlockBuffer& buffer);
  void Write(LcUStreamWriter& stream) const;
  bool Read(LcUStreamReader& stream);

  uint64_t GetSize() const { return uint64_t(chunkCount) * LcUStreamChunk::eDATA_SIZE + tailSize; }

private:
  bool SetTail(const uint8_t* bytes, uint32_t size);
  bool AppendChunk(LcUStreamChunk*& last, const uint8_t* bytes);

  LcUStreamChunk* chunks = nullptr;
  uint32_t chunkCount = 0;
  uint8_t* tailData = nullptr;
  uint32_t tailSize = 0;
};
