#include "filestream/LcUFileURLRemote.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileURLBlock.h"
#include "foundation/LcUAllocator.h"

namespace {
uint32_t Word(const uint8_t* at) {
  return uint32_t(at[0]) | uint32_t(at[1]) << 8 | uint32_t(at[2]) << 16 | uint32_t(at[3]) << 24;
}

void PutWord(uint8_t* at, uint32_t value) {
  for (int i = 0; i < 4; ++i) at[i] = uint8_t(value >> (8 * i));
}

using Bytes = std::vector<uint8_t, LcUAllocator<uint8_t>>;
}  // namespace

LcUFileURLRemote::LcUFileURLRemote(uint64_t totalSize, bool keepsLocalCopy)
    : totalSize(totalSize),
      blockCount(uint32_t((totalSize + LcUFileURLBlock::eSIZE - 1) / LcUFileURLBlock::eSIZE)),
      bits(blockCount),
      keepsLocalCopy(keepsLocalCopy) {
  if (!keepsLocalCopy) downloadedCount = blockCount;
}

bool LcUFileURLRemote::MarkDownloaded(uint32_t block) {
  if (block >= blockCount || bits.Test(block)) return false;
  bits.Set(block);
  ++downloadedCount;
  return downloadedCount == blockCount;
}

void LcUFileURLRemote::MarkMissing(uint32_t block) {
  if (block >= blockCount || !bits.Test(block)) return;
  bits.Clear(block);
  --downloadedCount;
  LowerTrickle(block);
}

bool LcUFileURLRemote::Apply(const uint8_t* data, size_t size) {
  if (size <= eHEADER_SIZE) return false;
  uint64_t total = uint64_t(Word(data)) | uint64_t(Word(data + 4)) << 32;
  uint32_t bitCount = Word(data + 20);
  if (total != totalSize || bitCount == 0 || bitCount != blockCount) return false;
  uint64_t words = LcUBitArray::WordCount(bitCount);
  if ((size - eHEADER_SIZE) / 4 < words) return false;
  bits.ClearAll();
  const uint8_t* word = data + eHEADER_SIZE;
  for (uint32_t i = 0; i < bitCount; ++i)
    if (Word(word + 4 * (i >> 5)) >> (i & 31) & 1) bits.Set(i);
  downloadedCount = bits.CountSet();
  uint32_t position = Word(data + 8);
  tricklePosition = position < blockCount ? position : 0;
  return true;
}

// Bytes past the words are never read, so a huge file costs nothing.
bool LcUFileURLRemote::Load(const char16_t* path) {
  int64_t size = 0;
  if (!LcUSysFile::GetSize(path, size) || size <= int64_t(eHEADER_SIZE)) return false;
  int64_t needed = int64_t(eHEADER_SIZE) + 4 * int64_t(LcUBitArray::WordCount(blockCount));
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, 0))
    return false;
  Bytes data(size_t(size < needed ? size : needed));
  size_t read = std::fread(data.data(), 1, data.size(), file.GetStream());
  return read == data.size() && Apply(data.data(), read);
}

bool LcUFileURLRemote::Save(const char16_t* path) const {
  uint32_t words = LcUBitArray::WordCount(bits.Count());
  Bytes data(eHEADER_SIZE + 4 * size_t(words));
  PutWord(data.data(), uint32_t(totalSize));
  PutWord(data.data() + 4, uint32_t(totalSize >> 32));
  PutWord(data.data() + 8, tricklePosition);
  PutWord(data.data() + 12, blockCount);
  PutWord(data.data() + 16, downloadedCount);
  PutWord(data.data() + 20, bits.Count());
  for (uint32_t i = 0; i < words; ++i) PutWord(data.data() + eHEADER_SIZE + 4 * i, bits.Words()[i]);
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, eFILE_MODE))
    return false;
  bool written = std::fwrite(data.data(), 1, data.size(), file.GetStream()) == data.size();
  return file.Close() && written;
}
