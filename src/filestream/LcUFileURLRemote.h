#pragma once
#include <cstddef>
#include <cstdint>

#include "foundation/LcUString.h"
#include "serial/LcUBitArray.h"

class LcUFileProtocol;

// What the engine knows of a remote file: which blocks its local copy
// already holds, and the protocol's handles to fetch the rest.
class LcUFileURLRemote {
public:
  enum : uint32_t { eTHREAD_HANDLES = 10, eHEADER_SIZE = 24, eFILE_MODE = 384 };

  // Without a local copy every block counts as downloaded.
  LcUFileURLRemote(uint64_t totalSize, bool keepsLocalCopy);

  bool Lacks() const { return downloadedCount < blockCount; }
  // Its number is past the count or its bit is clear.
  bool IsLocal(uint32_t block) const { return block < blockCount && bits.Test(block); }
  // True when this set the last missing bit.
  bool MarkDownloaded(uint32_t block);
  // For a block whose bytes never reached the local copy.
  void MarkMissing(uint32_t block);
  void LowerTrickle(uint32_t block) {
    if (tricklePosition > block) tricklePosition = block;
  }

  // The state file's bytes. Applied only when they describe this file
  // whole; otherwise the state stays as it was. The downloaded count comes
  // from the bits, never from the file.
  bool Apply(const uint8_t* data, size_t size);
  bool Load(const char16_t* path);
  bool Save(const char16_t* path) const;

  uint64_t totalSize;
  uint32_t tricklePosition = 0;
  uint32_t blockCount;
  uint32_t downloadedCount = 0;
  int32_t downloadsInFlight = 0;
  LcUBitArray bits;
  LcUFileProtocol* protocol = nullptr;
  void* handle = nullptr;
  void* threadHandles[eTHREAD_HANDLES] = {};
  LcUString statePath;
  bool keepsLocalCopy;
};
