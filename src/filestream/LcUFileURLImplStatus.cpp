#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUFileURLObserver.h"
#include "filestream/LcUFileURLRemote.h"

namespace {
// 1 idle; 3 busy, but 2 while the reader is not blocked on a block with data.
int32_t StateOf(bool busy, bool readerFree) {
  return !busy ? 1 : readerFree ? 2 : 3;
}
}  // namespace

// At most one call a status period; a forced call always goes out.
void LcUFileURLImpl::SendStatus(bool force) {
  uint64_t slot = clock() / eSTATUS_PERIOD;
  if (!force && slot == lastStatusSlot) return;
  lastStatusSlot = slot;
  if (!observer) return;
  uint64_t bytesRead = 0, sizes = 0, downloaded = 0, blocks = 0;
  for (auto* e = openFiles.First(); e; e = e->next) {
    const LcUFileURLFile* file = e->value;
    bytesRead += file->bytesRead;
    sizes += file->size;
    if (file->remote) {
      downloaded += file->remote->downloadedCount;
      blocks += file->remote->blockCount;
    }
  }
  bool readerFree = !pending && !buffer.empty() && buffer.front()->HasData();
  bool waiting = !requests.empty();
  LcUFileURLProgress progress;
  if (sizes) {
    progress.readState = StateOf(fileActions > 0 || waiting, readerFree);
    progress.readRatio = double(bytesRead) / double(sizes);
    progress.downloadState = StateOf(downloads > 0 || waiting, readerFree);
    progress.downloadRatio = blocks ? double(downloaded) / double(blocks) : 0;
  }
  observer->OnStatus(observerArgument, progress);
}
