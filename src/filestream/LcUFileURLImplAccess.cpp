#include <algorithm>
#include <cstring>

#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUFileURLRemote.h"
#include "foundation/LcUError.h"

LcUFileURLBlock* LcUFileURLImpl::FindInBuffer(const LcUFileURLFile* file, uint32_t index) const {
  for (LcUFileURLBlock* block : buffer)
    if (block->file == file && block->index == index) return block;
  return nullptr;
}

// Brings the reader to a block: what lies before it in the buffer, or in
// the requests, is given up. In the locked range nothing is given up.
LcUFileURLBlock* LcUFileURLImpl::SyncTo(LcUFileURLFile* file, uint32_t index) {
  if (file == lockFile && index >= lockFirst && index <= lockLast) return FindInBuffer(file, index);
  int32_t dropped = 0;
  while (!buffer.empty()) {
    LcUFileURLBlock* head = buffer.front();
    if (head->file == file && head->index == index) {
      if (dropped > 1) LcUError::TraceF(1, "LcUFileURL- Skipped %d blocks in buffer\n", int(dropped));
      LcUError::TraceF(1, u"SyncTo block %d (%ls)\n", int(index), file->url.Get());
      Update();
      return head;
    }
    LcUError::TraceF(1, u"SyncTo removed block %d (%ls)\n", int(head->index), head->file->url.Get());
    buffer.pop_front();
    ++dropped;
    Drop(head);
  }
  dropped = 0;
  while (!requests.empty() && !(requests.front()->file == file && requests.front()->index == index)) {
    LcUFileURLBlock* head = requests.front();
    LcUError::TraceF(1, u"SyncTo removed block %d (%ls)\n", int(head->index), head->file->url.Get());
    requests.pop_front();
    ++dropped;
    Drop(head);
  }
  if (requests.empty()) return nullptr;
  LcUFileURLBlock* block = requests.front();
  if (block->state == LcUFileURLBlock::eEMPTY) {
    if (file->remote)
      WaitWhile([this] { return downloads >= eDOWNLOAD_ACTION_LIMIT; });
    else
      WaitWhile([this] { return fileActions >= eFILE_ACTION_LIMIT; });
  }
  if (dropped > 1) LcUError::LogF("LcUFileURL- Skipped %d blocks in requests\n", int(dropped));
  Update();
  return block;
}

// The completions run here, on the reader's thread: state changes,
// retries and re-queues all happen inside this loop.
void LcUFileURLImpl::WaitForBlock(LcUFileURLBlock* block, bool forWrite) {
  for (;;) {
    uint32_t state = block->state;
    if (state == LcUFileURLBlock::eDOWNLOADING) {
      m_download_queue.ProcessFinished();
      if (block->state == state) m_download_queue.WaitForAction();
      continue;
    }
    bool reading = state == LcUFileURLBlock::eREADING;
    if (!reading && !(state == LcUFileURLBlock::eWRITING && forWrite)) return;
    LcUActionQueue& one = reading ? m_action_queue : m_temp_action_queue;
    LcUActionQueue& two = reading ? m_temp_action_queue : m_action_queue;
    int32_t before = fileActions;
    one.ProcessFinished();
    if (fileActions < before) continue;
    two.ProcessFinished();
    if (fileActions < before) continue;
    one.WaitForAction();
    two.WaitForAction();
  }
}

// Every read and write lowers the target back towards the buffer count.
int32_t LcUFileURLImpl::Shrink(int32_t result) {
  if (int32_t(buffer.size()) < bufferTarget) bufferTarget = std::max<int32_t>(int32_t(buffer.size()), eMIN_BUFFER_TARGET);
  return result;
}

int32_t LcUFileURLImpl::Read(LcUFileURLFile* file, int32_t mode, uint64_t offset, void* out, uint32_t size) {
  Update();
  if (size == 0) return eDONE;
  if (offset + size > file->size) return eFAILED;
  if (mode == eNON_BLOCKING) {
    int32_t ready = WaitForRange(file, offset, size, false);
    if (ready == eWOULD_BLOCK) {
      pending = true;
      return eWOULD_BLOCK;
    }
    if (ready != eDONE) return ready;
  }
  ++accessCount;
  file->bytesRead += size;
  uint8_t* target = static_cast<uint8_t*>(out);
  uint64_t end = offset + size;
  for (uint64_t position = offset; position < end;) {
    uint32_t index = uint32_t(position / eBLOCK_SIZE);
    LcUFileURLBlock* block = SyncTo(file, index);
    if (!block) {
      LcUError::TraceF(1, "LcUFileURL- Unprepared read %d\n", int(index));
      Prepare(file, position, end - position, false);
      block = SyncTo(file, index);
      if (!block) return Shrink(eFAILED);
    }
    WaitForBlock(block, false);
    if (block->state == LcUFileURLBlock::eDOWNLOAD_ERROR) {
      if (file->remote) file->remote->LowerTrickle(index);
      return Shrink(eUNAVAILABLE);
    }
    if (!block->HasData() || !block->buffer) return Shrink(eFAILED);
    uint32_t within = uint32_t(position % eBLOCK_SIZE);
    uint32_t count = uint32_t(std::min<uint64_t>(end - position, eBLOCK_SIZE - within));
    std::memcpy(target, block->buffer + within, count);
    target += count;
    position += count;
  }
  SendStatus(false);
  return Shrink(eDONE);
}

int32_t LcUFileURLImpl::Write(LcUFileURLFile* file, int32_t mode, uint64_t offset, const void* data, uint32_t size) {
  Update();
  if (size == 0) return eDONE;
  bool appending = file->appendBlock && offset == file->size;
  if (mode == eNON_BLOCKING && !appending && WaitForRange(file, offset, size, true) == eWOULD_BLOCK) {
    pending = false;
    return eWOULD_BLOCK;
  }
  ++accessCount;
  const uint8_t* source = static_cast<const uint8_t*>(data);
  uint64_t end = offset + size;
  for (uint64_t position = offset; position < end;) {
    uint32_t index = uint32_t(position / eBLOCK_SIZE);
    LcUFileURLBlock* block = appending ? file->appendBlock : SyncTo(file, index);
    if (!block) {
      LcUError::TraceF(1, "LcUFileURL- Unprepared write %d\n", int(index));
      Prepare(file, position, end - position, true);
      block = SyncTo(file, index);
      if (!block) return Shrink(eFAILED);
    }
    if (!appending) {
      WaitForBlock(block, true);
      if (block->state != LcUFileURLBlock::eVALID && block->state != LcUFileURLBlock::eDIRTY)
        return Shrink(eFAILED);
    }
    if (!block->buffer) return Shrink(eFAILED);
    uint32_t within = uint32_t(position % eBLOCK_SIZE);
    uint32_t count = uint32_t(std::min<uint64_t>(end - position, eBLOCK_SIZE - within));
    std::memcpy(block->buffer + within, source, count);
    block->state = LcUFileURLBlock::eDIRTY;
    file->MarkWritten(index);
    source += count;
    position += count;
    if (appending) {
      file->size += count;
      if (within + count == uint32_t(eBLOCK_SIZE)) {
        ReleaseAppendBlock(file);
        StartAppendBlock(file);
      }
    }
  }
  if (mode == eBLOCKING && dirty.Count() > eDIRTY_FLUSH_THRESHOLD && IsMemoryLow()) FlushDirty();
  return Shrink(eDONE);
}

// The test of a non-blocking call: 0 when the whole range has data.
int32_t LcUFileURLImpl::WaitForRange(LcUFileURLFile* file, uint64_t offset, uint64_t size, bool forWrite) {
  Update();
  if (size == 0) return eDONE;
  if (!forWrite && offset + size > file->size) return eFAILED;
  pending = false;
  uint32_t last = uint32_t((offset + size - 1) / eBLOCK_SIZE);
  uint32_t index = uint32_t(offset / eBLOCK_SIZE);
  for (; index <= last; ++index) {
    LcUFileURLBlock* block = FindInBuffer(file, index);
    if (!block) break;
    if (block->state == LcUFileURLBlock::eDOWNLOAD_ERROR) {
      if (file->remote) file->remote->LowerTrickle(index);
      return eUNAVAILABLE;
    }
    if (block->state == LcUFileURLBlock::eREAD_ERROR) return eFAILED;
    if (!block->HasData() || (forWrite && block->state == LcUFileURLBlock::eWRITING)) {
      pending = true;
      return eWOULD_BLOCK;
    }
  }
  if (index > last) return eDONE;
  if (!requests.empty()) {
    int32_t wanted = int32_t(last + 1 + uint32_t(buffer.size()) - index);
    if (wanted > bufferTarget) {
      bufferTarget = wanted;
      Update();
    }
    pending = true;
    return eWOULD_BLOCK;
  }
  LcUFileURLRemote* remote = file->remote;
  if (!remote) return eFAILED;
  if (remote->IsLocal(index)) {
    if (LcUFileURLBlock* block = file->GetBlock(index)) {
      AddRef(block);
      requests.push_back(block);
    }
    Update();
    return eWOULD_BLOCK;
  }
  remote->LowerTrickle(index);
  return eUNAVAILABLE;
}
