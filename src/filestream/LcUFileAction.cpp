#include "filestream/LcUFileAction.h"

#include <cerrno>
#include <cstdio>

#include "filestream/LcUFileURLBlock.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUSysFilePosition.h"

// The state was set before the action was queued and stays until Finish.
void LcUFileAction::Execute(int32_t) {
  if (!block->buffer) return;
  FILE* stream = block->file->local.GetStream();
  // A failed seek records no error: the block then counts as done.
  if (!stream || !LcUSysFilePosition::Seek(stream, int64_t(slot) * LcUFileURLBlock::eSIZE)) return;
  // A remote file's local copy keeps the remote size: its last block is
  // written only as far as the file goes.
  size_t length = LcUFileURLBlock::eSIZE;
  const LcUFileURLFile* file = block->file;
  uint64_t start = uint64_t(block->index) * LcUFileURLBlock::eSIZE;
  if (file->remote && start < file->size && file->size - start < length) length = size_t(file->size - start);
  errno = 0;
  size_t moved = block->state == LcUFileURLBlock::eREADING ? std::fread(block->buffer, 1, length, stream)
                                                           : std::fwrite(block->buffer, 1, length, stream);
  // A short last block moves less and still succeeds.
  if (moved == 0) error = errno ? uint32_t(errno) : 1;
}

bool LcUFileAction::Finish() {
  engine->FinishFileAction(this);
  return false;
}
