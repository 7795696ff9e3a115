#include "filestream/LcUFileURLImpl.h"

#include <algorithm>
#include <cstring>

#include "filestream/LcUFileAction.h"
#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcUInternetAction.h"
#include "filestream/LcUNetworkConnection.h"
#include "foundation/LcUError.h"
#include "foundation/LcUPage.h"
#include "foundation/LcUPageOutProgress.h"
#include "foundation/LcUSysErrorPlatform.h"

namespace {
uint64_t PlatformTick() {
  return LcUSysErrorPlatform::TickCount();
}

bool PageSaysMemoryLow() {
  return LcUPage::IsMemoryLow(LcUPage::eLOW);
}

const int32_t kUnlimited = INT32_MAX;
}  // namespace

LcUFileURLImpl::LcUFileURLImpl(int32_t cacheMode)
    : ownCaching(cacheMode == 1 ? true : cacheMode == 2 ? false : !LcUPage::IsAddressSpaceBound()),
      clock(&PlatformTick),
      memoryTest(&PageSaysMemoryLow),
      m_action_queue(kUnlimited, 1, false, true),
      m_temp_action_queue(kUnlimited, 1, false, true),
      m_download_queue(kUnlimited, eDOWNLOAD_THREADS, false),
      m_open_queue(eOPEN_QUEUE_PLACES, eOPEN_THREADS, false, true) {
  LcUError::TraceF(5, "LcUFileURL- Own Caching=%d\n", int(ownCaching));
  LcUPage::AddPageOut(this);
}

LcUFileURLImpl::~LcUFileURLImpl() {
  LcUPage::RemovePageOut(this);
  m_open_queue.WaitForEmpty();
  m_open_queue.ProcessFinished();
  for (auto* table : {&openingFiles, &openFiles})
    while (auto* element = table->First()) {
      LcUFileURLFile* file = element->value;
      table->Erase(file->url.Get());
      Destroy(file);
    }
  CancelAll();
  for (LcUFileAction* action : filePool) delete action;
  for (LcUInternetAction* action : downloadPool) delete action;
}

bool LcUFileURLImpl::IsNetworkUp() const {
  LcUNetworkConnection* network = LcUNetworkConnection::GetInstance();
  return network && network->IsUp();
}

// Under memory pressure a new block takes the oldest clean block's memory.
bool LcUFileURLImpl::GetBuffer(LcUFileURLBlock* block) {
  if (block->buffer) return true;
  // Streaming is where memory grows: the limits are enforced as buffers are taken.
  LcUPage::CheckLimits();
  if (clean.Count() && IsMemoryLow()) {
    LcUFileURLBlock* oldest = clean.Head();
    clean.Remove(oldest);
    block->buffer = oldest->buffer;
    oldest->buffer = nullptr;
    oldest->file->DeleteBlock(oldest);
  } else {
    block->buffer = static_cast<uint8_t*>(LcUMemory::Alloc(eBLOCK_SIZE, 16, 1));
    if (!block->buffer) return false;
  }
  // A short last block reads as a full one; its tail stays zero.
  std::memset(block->buffer, 0, eBLOCK_SIZE);
  return true;
}

void LcUFileURLImpl::FreeBuffer(LcUFileURLBlock* block) {
  if (block->buffer) LcUMemory::Free(block->buffer, eBLOCK_SIZE, 16);
  block->buffer = nullptr;
}

void LcUFileURLImpl::DeleteBlock(LcUFileURLBlock* block) {
  if (block->list) block->list->Remove(block);
  FreeBuffer(block);
  block->file->DeleteBlock(block);
}

void LcUFileURLImpl::AddRef(LcUFileURLBlock* block) {
  if (block->refs++ == 0 && block->list) block->list->Remove(block);
}

void LcUFileURLImpl::Drop(LcUFileURLBlock* block) {
  if (--block->refs == 0) ReleaseBlock(block);
}

// With own caching the engine keeps everything until memory is short;
// without, no more than the buffer target.
void LcUFileURLImpl::ReleaseBlock(LcUFileURLBlock* block) {
  if (block->state & LcUFileURLBlock::eUNSAVED) {
    dirty.Append(block);
    return;
  }
  int32_t held = int32_t(buffer.size());
  while (clean.Count() && held + clean.Count() > bufferTarget) {
    if (ownCaching && !IsMemoryLow()) break;
    DeleteBlock(clean.Head());
  }
  if (block->HasData() && block->buffer &&
      (held + clean.Count() <= bufferTarget || (ownCaching && !IsMemoryLow()))) {
    clean.Append(block);
    return;
  }
  DeleteBlock(block);
}

void LcUFileURLImpl::Prepare(LcUFileURLFile* file, uint64_t offset, uint64_t size, bool forWrite) {
  if (size == 0) return;
  if (!forWrite) {
    if (offset >= file->size) return;
    size = std::min(size, file->size - offset);
  }
  ++accessCount;
  uint32_t first = uint32_t(offset / eBLOCK_SIZE);
  uint32_t last = uint32_t((offset + size - 1) / eBLOCK_SIZE);
  // Where two prepares meet in one block, it is asked for once.
  const BlockQueue& tailQueue = requests.empty() ? buffer : requests;
  if (!tailQueue.empty() && tailQueue.back()->file == file && tailQueue.back()->index == first) ++first;
  for (uint64_t index = first; index <= last; ++index) {
    LcUFileURLBlock* block = file->GetBlock(uint32_t(index));
    if (!block) break;
    if (block->state == LcUFileURLBlock::eREAD_ERROR || block->state == LcUFileURLBlock::eDOWNLOAD_ERROR) {
      block->state = LcUFileURLBlock::eEMPTY;
      block->attempts = 0;
    }
    // Old contents of a block never written do not matter.
    if (forWrite && block->state == LcUFileURLBlock::eEMPTY && file->IsNeverWritten(block->index))
      block->state = LcUFileURLBlock::eVALID;
    AddRef(block);
    requests.push_back(block);
  }
  Update();
}

void LcUFileURLImpl::RunCompletions() {
  if (downloads) m_download_queue.ProcessFinished();
  if (fileActions) {
    m_action_queue.ProcessFinished();
    m_temp_action_queue.ProcessFinished();
  }
}

bool LcUFileURLImpl::Update() {
  bool changed = false;
  if (downloads) {
    int32_t before = downloads;
    m_download_queue.ProcessFinished();
    changed = downloads < before;
  }
  if (fileActions) {
    int32_t before = fileActions;
    m_action_queue.ProcessFinished();
    if (fileActions == before) m_temp_action_queue.ProcessFinished();
    changed = changed || fileActions < before;
  }
  while (!requests.empty()) {
    if (int32_t(buffer.size()) + 1 > bufferTarget && IsMemoryLow()) break;
    LcUFileURLBlock* block = requests.front();
    if (!GetBuffer(block)) break;
    if (block->state == LcUFileURLBlock::eEMPTY) {
      LcUFileURLRemote* remote = block->file->remote;
      if (remote && !remote->IsLocal(block->index)) {
        if (remote->keepsLocalCopy && !IsNetworkUp()) {
          remote->LowerTrickle(block->index);
          FreeBuffer(block);
          block->state = LcUFileURLBlock::eDOWNLOAD_ERROR;
        } else if (TryCombinedDownload()) {
          changed = true;
          continue;
        } else if (!StartDownload(&block, 1)) {
          LcUError::TraceF(1, "LcUFileURL- block[%d] Download REFUSED\n", int(block->index));
          break;
        } else {
          LcUError::TraceF(1, "LcUFileURL- block[%d] Download ACCEPTED\n", int(block->index));
        }
      } else {
        StartFileAction(block, LcUFileURLBlock::eREADING);
        LcUError::TraceF(1, "LcUFileURL- block[%d] Read ACCEPTED\n", int(block->index));
      }
    }
    requests.pop_front();
    buffer.push_back(block);
    changed = true;
  }
  if (trickleWanted && IsNetworkUp()) {
    Trickle();
    trickleWanted = downloads > 0 || AnyRemoteLacks();
  }
  // With memory to spare, write-behind goes one block at a time.
  while (dirty.Count() && fileActions < eFILE_ACTION_LIMIT && writes < eWRITE_ACTION_LIMIT) {
    if (!IsMemoryLow() && fileActions > 0) break;
    if (!StartWrite(dirty.Head())) break;
    changed = true;
    if (!dirty.Count()) {
      SendStatus(false);
      return fileActions > 0 || trickleWanted;
    }
  }
  if (changed) SendStatus(false);
  return fileActions > 0 || trickleWanted;
}

// A refused read leaves the block in READ_ERROR, so that no reader waits
// for an action that will never come.
bool LcUFileURLImpl::StartFileAction(LcUFileURLBlock* block, uint32_t state) {
  LcUFileAction* action = Take(filePool);
  LcUFileURLFile* file = block->file;
  action->block = block;
  action->slot = file->SlotOf(block->index);
  action->error = 0;
  block->state = state;
  AddRef(block);
  ++fileActions;
  ++file->fileActions;
  if (state == LcUFileURLBlock::eWRITING) ++writes;
  LcUActionQueue& queue = FileQueue(file);
  if (queue.AddAction(action)) return true;
  LcUError::TraceF(1, file->temporaryWritable ? "LcUFileURL- block[%d] m_temp_action_queue.AddAction REFUSED\n"
                                              : "LcUFileURL- block[%d] m_action_queue.AddAction REFUSED\n",
                   int(block->index));
  CancelFileAction(action);
  if (state == LcUFileURLBlock::eREADING) block->state = LcUFileURLBlock::eREAD_ERROR;
  return false;
}

bool LcUFileURLImpl::StartWrite(LcUFileURLBlock* block) {
  return StartFileAction(block, LcUFileURLBlock::eWRITING);
}

void LcUFileURLImpl::FinishFileAction(LcUFileAction* action) {
  LcUFileURLBlock* block = action->block;
  LcUFileURLFile* file = block->file;
  if (block->state == LcUFileURLBlock::eWRITING) {
    --writes;
    if (action->error) LcUError::LogF("LcUFileURL- WriteFile error %d\n", int(action->error));
    block->state = action->error ? LcUFileURLBlock::eDIRTY : LcUFileURLBlock::eVALID;
  } else {
    if (action->error) LcUError::LogF("LcUFileURL- ReadFile error %d\n", int(action->error));
    block->state = action->error ? LcUFileURLBlock::eREAD_ERROR : LcUFileURLBlock::eVALID;
  }
  action->block = nullptr;
  filePool.push_back(action);
  --fileActions;
  --file->fileActions;
  Drop(block);
}

// A cancelled read is as if never started; a cancelled write stays dirty.
void LcUFileURLImpl::CancelFileAction(LcUFileAction* action) {
  LcUFileURLBlock* block = action->block;
  LcUFileURLFile* file = block->file;
  if (block->state == LcUFileURLBlock::eWRITING) {
    --writes;
    block->state = LcUFileURLBlock::eDIRTY;
  } else {
    block->state = LcUFileURLBlock::eEMPTY;
    block->attempts = 0;
  }
  action->block = nullptr;
  filePool.push_back(action);
  --fileActions;
  --file->fileActions;
  Drop(block);
}

// Each block present at the start is written once: one that fails goes
// back to the dirty list for the scheduler, rather than round this loop.
bool LcUFileURLImpl::FlushDirty() {
  int32_t before = dirty.Count();
  int32_t budget = before;
  bool own = ownCaching;
  ownCaching = false;
  WaitWhile([this, &budget] {
    for (; budget > 0 && dirty.Count() && fileActions < eFILE_ACTION_LIMIT; --budget)
      if (!StartWrite(dirty.Head())) return false;
    return writes > 0;
  });
  ownCaching = own;
  return dirty.Count() < before;
}

int32_t LcUFileURLImpl::PageOut(int32_t, int32_t, int32_t, int32_t pass, LcUPageOutProgress* progress) {
  if ((pass != 1 && pass != 8) || !progress) return 0;
  while (clean.Count() && !progress->done) {
    DeleteBlock(clean.Head());
    progress->done = progress->Check(1);
  }
  if (pass != 8) return 0;
  while (dirty.Count() && !progress->done && FlushDirty()) progress->done = progress->Check(1);
  return 1;
}

void LcUFileURLImpl::CancelAll() {
  for (BlockQueue* queue : {&requests, &buffer})
    while (!queue->empty()) {
      LcUFileURLBlock* block = queue->front();
      queue->pop_front();
      Drop(block);
    }
  bufferTarget = eMIN_BUFFER_TARGET;
  auto cancelFile = [this](LcUFileAction* action) {
    CancelFileAction(action);
    return true;
  };
  if (fileActions) {
    CancelQueued<LcUFileAction>(m_action_queue, cancelFile);
    CancelQueued<LcUFileAction>(m_temp_action_queue, cancelFile);
  }
  CancelQueued<LcUInternetAction>(m_download_queue, [this](LcUInternetAction* action) {
    CancelDownload(action);
    return true;
  });
  aborting = true;
  WaitWhile([this] { return fileActions > 0 || downloads > 0; });
  aborting = false;
}

void LcUFileURLImpl::Lock(LcUFileURLFile* file, uint64_t offset, uint64_t size) {
  lockFile = file;
  lockFirst = uint32_t(offset / eBLOCK_SIZE);
  lockLast = uint32_t((offset + (size ? size - 1 : 0)) / eBLOCK_SIZE);
  LcUError::TraceF(1, u"Lock: %d to %d (%ls)\n", int(lockFirst), int(lockLast), file->url.Get());
}

void LcUFileURLImpl::Unlock(LcUFileURLFile* file) {
  LcUError::TraceF(1, u"Unlock: %d to %d (%ls)\n", int(lockFirst), int(lockLast), file->url.Get());
  lockFile = nullptr;
}

bool LcUFileURLImpl::Poll() {
  pending = false;
  bool opened = m_open_queue.ProcessFinished();
  if (Update() || opened) return true;
  SendStatus(true);
  return false;
}

void LcUFileURLImpl::AddCompletionHook(LcUFileURLCompletionHook* hook) {
  hooks.push_back(hook);
}

void LcUFileURLImpl::RemoveCompletionHook(LcUFileURLCompletionHook* hook) {
  hooks.erase(std::remove(hooks.begin(), hooks.end(), hook), hooks.end());
}

void LcUFileURLImpl::SetObserver(LcUFileURLObserver* newObserver, void* argument) {
  observer = newObserver;
  observerArgument = argument;
}

void LcUFileURLImpl::SetClock(Clock newClock) {
  clock = newClock ? newClock : &PlatformTick;
}

void LcUFileURLImpl::SetMemoryTest(MemoryTest test) {
  memoryTest = test ? test : &PageSaysMemoryLow;
}
