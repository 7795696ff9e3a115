#include "serial/LcUStreamBlockData.h"

#include <cstdio>
#include <cstring>

#include "foundation/LcUMemory.h"
#include "serial/LcUStreamBlockBuffer.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

void LcUStreamBlockData::Clear() {
  LcUStreamChunk::FreeChain(chunks);
  chunks = nullptr;
  chunkCount = 0;
  if (tailData) LcUMemory::Free(tailData, tailSize, 8);
  tailData = nullptr;
  tailSize = 0;
}

bool LcUStreamBlockData::SetTail(const uint8_t* bytes, uint32_t size) {
  if (tailData) LcUMemory::Free(tailData, tailSize, 8);
  tailData = nullptr;
  tailSize = 0;
  if (size == 0) return true;
  tailData = static_cast<uint8_t*>(LcUMemory::Alloc(size, 8, 1));
  if (!tailData) return false;
  std::memcpy(tailData, bytes, size);
  tailSize = size;
  return true;
}

bool LcUStreamBlockData::AppendChunk(LcUStreamChunk*& last, const uint8_t* bytes) {
  LcUStreamChunk* chunk = LcUStreamChunk::New();
  if (!chunk) return false;
  if (bytes) std::memcpy(chunk->data, bytes, LcUStreamChunk::eDATA_SIZE);
  (last ? last->next : chunks) = chunk;
  last = chunk;
  ++chunkCount;
  return true;
}

bool LcUStreamBlockData::Equals(const LcUStreamBlockData& other) const {
  if (GetSize() != other.GetSize()) return false;
  for (LcUStreamChunk *a = chunks, *b = other.chunks; a; a = a->next, b = b->next)
    if (std::memcmp(a->data, b->data, LcUStreamChunk::eDATA_SIZE) != 0) return false;
  return tailSize == 0 || std::memcmp(tailData, other.tailData, tailSize) == 0;
}

bool LcUStreamBlockData::CopyFrom(const LcUStreamBlockData& other) {
  if (&other == this) return true;
  Clear();
  LcUStreamChunk* last = nullptr;
  for (LcUStreamChunk* c = other.chunks; c; c = c->next)
    if (!AppendChunk(last, c->data)) return false;
  return SetTail(other.tailData, other.tailSize);
}

void LcUStreamBlockData::TakeFrom(LcUStreamBlockBuffer& buffer) {
  Clear();
  LcUStreamChunk* tail = buffer.tail;
  uint32_t tailUsed = buffer.tailUsed;
  chunks = buffer.head;
  buffer.head = buffer.tail = nullptr;
  buffer.owned = 0;
  buffer.Clear();
  if (!chunks) return;
  for (LcUStreamChunk* c = chunks; c; c = c->next) ++chunkCount;
  if (tailUsed == LcUStreamChunk::eDATA_SIZE) return;
  // The final, partly filled chunk becomes the tail.
  LcUStreamChunk** link = &chunks;
  while (*link != tail) link = &(*link)->next;
  *link = nullptr;
  --chunkCount;
  SetTail(tail->data, tailUsed);
  LcUStreamChunk::FreeChain(tail);
}

bool LcUStreamBlockData::GiveTo(LcUStreamBlockBuffer& buffer) {
  buffer.Clear();
  LcUStreamChunk* last = nullptr;
  for (LcUStreamChunk* c = chunks; c; c = c->next) last = c;
  buffer.head = chunks;
  buffer.tail = last;
  buffer.tailUsed = LcUStreamChunk::eDATA_SIZE;
  buffer.owned = chunks != nullptr;
  chunks = nullptr;
  chunkCount = 0;
  bool ok = true;
  if (tailSize > 0) {
    uint8_t* block;
    uint32_t room;
    ok = buffer.GetWriteBlock(&block, &room);
    if (ok) {
      std::memcpy(block, tailData, tailSize);
      buffer.CommitWrite(tailSize);
    }
  }
  SetTail(nullptr, 0);
  buffer.ReadBegin(nullptr);
  return ok;
}

void LcUStreamBlockData::Write(LcUStreamWriter& stream) const {
  stream.WriteInt32(int32_t(chunkCount));
  for (LcUStreamChunk* c = chunks; c; c = c->next) stream.WriteNat8Array(c->data, LcUStreamChunk::eDATA_SIZE);
  stream.WriteInt32(int32_t(tailSize));
  if (tailSize) stream.WriteNat8Array(tailData, tailSize);
}

bool LcUStreamBlockData::Read(LcUStreamReader& stream) {
  Clear();
  int32_t count = stream.ReadInt32Checked();
  LcUStreamChunk* last = nullptr;
  // A hostile count ends with the data: each chunk is read before the next is made.
  for (int32_t i = 0; i < count && stream.GetError() == 0; ++i) {
    if (!AppendChunk(last, nullptr)) return false;
    stream.ReadNat8Array(last->data, LcUStreamChunk::eDATA_SIZE);
  }
  int32_t size = stream.ReadInt32();
  if (stream.GetError() == 0 && (size < 0 || size >= int32_t(LcUStreamChunk::eDATA_SIZE))) {
    char read[16];
    std::snprintf(read, sizeof read, "%d", size);
    stream.FailMismatch(read, "Tail size");
  }
  if (stream.GetError() == 0 && size > 0) {
    uint8_t bytes[LcUStreamChunk::eDATA_SIZE];
    stream.ReadNat8Array(bytes, uint32_t(size));
    SetTail(bytes, uint32_t(size));
  }
  if (stream.GetError() != 0) Clear();
  return stream.GetError() == 0;
}
