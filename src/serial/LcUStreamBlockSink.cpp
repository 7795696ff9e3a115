#include "serial/LcUStreamBlockSink.h"

#include <cstring>

LcUStreamBlockSink::LcUStreamBlockSink(uint32_t blockSize, uint32_t padLastBlock)
    : blockSize(blockSize), padLastBlock(padLastBlock) {}

LcUStreamBlockSink::~LcUStreamBlockSink() {
  if (block) FreeBlock(block, blockSize);
}

bool LcUStreamBlockSink::WriteBegin(LcUStream*) {
  if (!block) block = static_cast<uint8_t*>(AllocBlock(blockSize));
  cursor = block;
  return block != nullptr;
}

bool LcUStreamBlockSink::GetWriteBlock(uint8_t** lent, uint32_t* size) {
  if (!block) return false;
  *lent = cursor;
  *size = blockSize - uint32_t(cursor - block);
  return true;
}

bool LcUStreamBlockSink::CommitWrite(uint32_t count) {
  if (!block || count > blockSize - uint32_t(cursor - block)) return false;
  cursor += count;
  if (cursor != block + blockSize) return true;
  cursor = block;
  return WriteBlock(block, blockSize);
}

bool LcUStreamBlockSink::WriteEnd() {
  if (!block) return true;
  uint32_t used = uint32_t(cursor - block);
  if (used > 0) {
    if (padLastBlock) {
      std::memset(cursor, 0, blockSize - used);
      used = blockSize;
    }
    if (!WriteBlock(block, used)) return false;
  }
  FreeBlock(block, blockSize);
  block = cursor = nullptr;
  return true;
}

bool LcUStreamBlockSink::ReadBegin(LcUStream*) {
  if (!block) block = static_cast<uint8_t*>(AllocBlock(blockSize));
  cursor = nullptr;
  validBytes = 0;
  return block != nullptr;
}

int32_t LcUStreamBlockSink::GetReadBlock(const uint8_t** lent, uint32_t* size) {
  *lent = nullptr;
  *size = 0;
  if (!block) return 2;
  if (!cursor) {
    validBytes = 0;
    if (int32_t result = ReadBlock(block, &validBytes)) return result;
    if (validBytes == 0) return 0;
    cursor = block;
  }
  *lent = cursor;
  *size = validBytes - uint32_t(cursor - block);
  return 0;
}

bool LcUStreamBlockSink::ConsumeRead(uint32_t count) {
  uint32_t remaining = cursor ? validBytes - uint32_t(cursor - block) : 0;
  if (count > remaining) return false;
  if (!cursor) return true;
  cursor += count;
  if (cursor == block + validBytes) cursor = nullptr;
  return true;
}

uint8_t* LcUStreamBlockSink::TakePending(uint32_t* size) {
  *size = block && cursor ? uint32_t(cursor - block) : 0;
  if (*size == 0) return nullptr;
  cursor = block;
  return block;
}
