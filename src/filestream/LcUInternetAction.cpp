#include "filestream/LcUInternetAction.h"

#include <algorithm>
#include <cstring>

#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileURLBlock.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUFileURLRemote.h"
#include "foundation/LcUMemory.h"

void LcUInternetAction::Execute(int32_t threadIndex) {
  error = true;
  for (uint32_t i = 0; i < count; ++i)
    if (!blocks[i]->buffer) return;
  LcUFileURLFile* file = blocks[0]->file;
  LcUFileURLRemote* remote = file->remote;
  uint64_t offset = uint64_t(blocks[0]->index) * LcUFileURLBlock::eSIZE;
  uint64_t size = uint64_t(count) * LcUFileURLBlock::eSIZE;
  if (offset >= remote->totalSize) return;
  if (offset + size > remote->totalSize) size = remote->totalSize - offset;
  void* thread = threadIndex >= 0 && threadIndex < int32_t(LcUFileURLRemote::eTHREAD_HANDLES)
                     ? remote->threadHandles[threadIndex]
                     : nullptr;
  if (count == 1) {
    error = !remote->protocol->ReadFile(remote->handle, thread, request, int64_t(offset), uint32_t(size),
                                        blocks[0]->buffer);
    return;
  }
  uint8_t* region = static_cast<uint8_t*>(LcUMemory::Alloc(size, 16, 1));
  if (!region) return;
  error = !remote->protocol->ReadFile(remote->handle, thread, request, int64_t(offset), uint32_t(size), region);
  for (uint32_t i = 0; !error && i < count; ++i) {
    uint64_t start = uint64_t(i) * LcUFileURLBlock::eSIZE;
    uint64_t share = std::min<uint64_t>(size - start, LcUFileURLBlock::eSIZE);
    std::memcpy(blocks[i]->buffer, region + start, size_t(share));
  }
  LcUMemory::Free(region, size, 16);
}

bool LcUInternetAction::Finish() {
  engine->FinishDownload(this);
  return false;
}
