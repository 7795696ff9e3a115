#include "serial/LcUStreamBlockBuffer.h"

LcUStreamBlockBuffer::~LcUStreamBlockBuffer() {
  Clear();
}

void LcUStreamBlockBuffer::Clear() {
  if (owned) LcUStreamChunk::FreeChain(head);
  head = tail = readChunk = nullptr;
  tailUsed = LcUStreamChunk::eDATA_SIZE;
  readOffset = 0;
  owned = 0;
}

bool LcUStreamBlockBuffer::WriteBegin(LcUStream*) {
  Clear();
  return true;
}

bool LcUStreamBlockBuffer::GetWriteBlock(uint8_t** block, uint32_t* size) {
  if (tailUsed == LcUStreamChunk::eDATA_SIZE) {
    LcUStreamChunk* chunk = LcUStreamChunk::New();
    if (!chunk) return false;
    if (tail)
      tail->next = chunk;
    else
      head = chunk;
    tail = chunk;
    tailUsed = 0;
    owned = 1;
  }
  *block = tail->data + tailUsed;
  *size = LcUStreamChunk::eDATA_SIZE - tailUsed;
  return true;
}

bool LcUStreamBlockBuffer::CommitWrite(uint32_t count) {
  if (!tail || count > LcUStreamChunk::eDATA_SIZE - tailUsed) return false;
  tailUsed += count;
  return true;
}

bool LcUStreamBlockBuffer::ReadBegin(LcUStream*) {
  readChunk = head;
  readOffset = 0;
  return true;
}

int32_t LcUStreamBlockBuffer::GetReadBlock(const uint8_t** block, uint32_t* size) {
  *block = nullptr;
  *size = 0;
  if (!readChunk) return 0;
  uint32_t limit = readChunk == tail ? tailUsed : uint32_t(LcUStreamChunk::eDATA_SIZE);
  // An empty tail is the end too, not a block of nothing.
  if (readOffset == limit) return 0;
  *block = readChunk->data + readOffset;
  *size = limit - readOffset;
  return 0;
}

bool LcUStreamBlockBuffer::ConsumeRead(uint32_t count) {
  if (!readChunk) return count == 0;
  uint32_t limit = readChunk == tail ? tailUsed : uint32_t(LcUStreamChunk::eDATA_SIZE);
  if (count > limit - readOffset) return false;
  readOffset += count;
  if (readOffset == limit) {
    readChunk = readChunk->next;
    readOffset = 0;
  }
  return true;
}

uint64_t LcUStreamBlockBuffer::GetSize() const {
  uint64_t size = 0;
  for (LcUStreamChunk* c = head; c; c = c->next) size += c == tail ? tailUsed : uint32_t(LcUStreamChunk::eDATA_SIZE);
  return size;
}
