#include <algorithm>

#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileURLCompletionHook.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUFileURLPlanner.h"
#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcUInternetAction.h"
#include "foundation/LcUError.h"

// Neighbouring requests of the head's file travel in one ranged request.
bool LcUFileURLImpl::TryCombinedDownload() {
  LcUFileURLBlock* head = requests.front();
  LcUFileURLFile* file = head->file;
  LcUFileURLRemote* remote = file->remote;
  int32_t first = 0, last = 0;
  remote->protocol->GetPrefetchRange(remote->handle, int32_t(head->index), first, last);
  int32_t limit = std::min<int32_t>(last - first + 1, eMULTI_BLOCK_LIMIT);
  uint32_t indexes[eMULTI_BLOCK_LIMIT];
  int32_t count = 0, distinct = 0;
  for (LcUFileURLBlock* block : requests) {
    if (count >= limit || block->file != file || int64_t(block->index) < first || int64_t(block->index) > last ||
        block->state != LcUFileURLBlock::eEMPTY || remote->IsLocal(block->index) || !GetBuffer(block))
      break;
    if (std::find(indexes, indexes + count, block->index) == indexes + count) ++distinct;
    indexes[count++] = block->index;
    if (int32_t(buffer.size()) + distinct > bufferTarget && IsMemoryLow()) break;
  }
  LcUFileURLPlanner::Plan plan;
  if (!LcUFileURLPlanner::Make(indexes, count, plan)) return false;
  LcUFileURLBlock* run[LcUInternetAction::eMAX_BLOCKS] = {};
  for (int32_t i = 0; i < plan.taken; ++i) run[requests[size_t(i)]->index - plan.first] = requests[size_t(i)];
  if (!StartDownload(run, plan.last - plan.first + 1)) {
    LcUError::TraceF(1, "LcUFileURL-Multiple block download REFUSED block=%d-%d\n", int(plan.first), int(plan.last));
    return false;
  }
  LcUError::TraceF(1, "LcUFileURL-Multiple block download ACCEPTED blocks=%d-%d\n", int(plan.first), int(plan.last));
  for (int32_t i = 0; i < plan.taken; ++i) {
    buffer.push_back(requests.front());
    requests.pop_front();
  }
  return true;
}

bool LcUFileURLImpl::StartDownload(LcUFileURLBlock* const* blocks, uint32_t count) {
  LcUInternetAction* action = Take(downloadPool);
  LcUFileURLRemote* remote = blocks[0]->file->remote;
  if (!trickling) lastDemand = clock();
  std::copy(blocks, blocks + count, action->blocks);
  action->count = count;
  action->request = remote->protocol->CreateRequest(remote->handle, int64_t(blocks[0]->index) * eBLOCK_SIZE,
                                                    count * uint32_t(eBLOCK_SIZE));
  for (uint32_t i = 0; i < count; ++i) {
    blocks[i]->state = LcUFileURLBlock::eDOWNLOADING;
    AddRef(blocks[i]);
  }
  ++downloads;
  ++remote->downloadsInFlight;
  if (m_download_queue.AddAction(action)) return true;
  CancelDownload(action);
  return false;
}

void LcUFileURLImpl::SetStates(LcUInternetAction* action, uint32_t state) {
  for (uint32_t i = 0; i < action->count; ++i) {
    action->blocks[i]->state = state;
    if (state == LcUFileURLBlock::eEMPTY) action->blocks[i]->attempts = 0;
  }
}

// Only the first block's attempts decide, for a combined download too.
void LcUFileURLImpl::FinishDownload(LcUInternetAction* action) {
  LcUFileURLBlock* first = action->blocks[0];
  LcUFileURLFile* file = first->file;
  LcUFileURLRemote* remote = file->remote;
  if (action->error) {
    LcUError::TraceF(1, "LcUFileURL- block[%d] download attempt[%d] ATTEMPT_FAILED(%d)\n", int(first->index),
                     int(first->attempts), 1);
    ++first->attempts;
    if (aborting || file->closing) {
      LcUError::TraceF(1, "DownloadFile block=%d-%d FAILED(%d)\n", int(first->index),
                       int(first->index + action->count - 1), 1);
      SetStates(action, LcUFileURLBlock::eEMPTY);
    } else if (first->attempts >= uint32_t(eRETRY_LIMIT)) {
      LcUError::TraceF(1, "LcUFileURL- block[%d] download retry limit reached DOWNLOAD_ERROR\n", int(first->index));
      SetStates(action, LcUFileURLBlock::eDOWNLOAD_ERROR);
    }
  } else {
    SetStates(action, remote->keepsLocalCopy ? LcUFileURLBlock::eDIRTY : LcUFileURLBlock::eVALID);
    bool complete = false;
    for (uint32_t i = 0; remote->keepsLocalCopy && i < action->count; ++i)
      complete = remote->MarkDownloaded(action->blocks[i]->index) || complete;
    if (complete)
      for (LcUFileURLCompletionHook* hook : hooks) hook->OnComplete(file);
  }
  if (first->state == LcUFileURLBlock::eDOWNLOADING) {
    if (m_download_queue.AddAction(action)) return;
    SetStates(action, LcUFileURLBlock::eDOWNLOAD_ERROR);
  }
  EndDownload(action);
}

void LcUFileURLImpl::EndDownload(LcUInternetAction* action) {
  LcUFileURLRemote* remote = action->blocks[0]->file->remote;
  remote->protocol->DestroyRequest(action->request);
  action->request = nullptr;
  --downloads;
  --remote->downloadsInFlight;
  uint32_t count = action->count;
  action->count = 0;
  downloadPool.push_back(action);
  for (uint32_t i = 0; i < count; ++i) Drop(action->blocks[i]);
}

void LcUFileURLImpl::CancelDownload(LcUInternetAction* action) {
  SetStates(action, LcUFileURLBlock::eEMPTY);
  EndDownload(action);
}

bool LcUFileURLImpl::AnyRemoteLacks() const {
  for (auto* e = openFiles.First(); e; e = e->next)
    if (e->value->remote && e->value->remote->keepsLocalCopy && e->value->remote->Lacks()) return true;
  return false;
}

// One block a call, once no demand download has run for the idle time.
// It does not stamp the demand time itself, so it goes on block by block.
void LcUFileURLImpl::Trickle() {
  if (aborting || downloads > 0) return;
  uint64_t now = clock();
  if (lastDemand == 0 || lastDemand > now) lastDemand = now;
  if (now - lastDemand < uint64_t(eTRICKLE_IDLE_TIME)) return;
  for (auto* e = openFiles.First(); e; e = e->next) {
    LcUFileURLFile* file = e->value;
    LcUFileURLRemote* remote = file->remote;
    if (!remote || !remote->keepsLocalCopy || !remote->Lacks()) continue;
    if (remote->tricklePosition >= remote->blockCount) remote->tricklePosition = 0;
    for (uint32_t index = remote->tricklePosition; index < remote->blockCount; ++index) {
      LcUFileURLBlock* block = remote->bits.Test(index) ? nullptr : file->GetBlock(index);
      if (!block || block->state != LcUFileURLBlock::eEMPTY) continue;
      remote->tricklePosition = index + 1;
      if (!GetBuffer(block)) return;
      trickling = true;
      bool accepted = StartDownload(&block, 1);
      trickling = false;
      LcUError::TraceF(1, accepted ? "LcUFileURL- block[%d] TrickleDownload ACCEPTED\n"
                                   : "LcUFileURL- block[%d] TrickleDownload REFUSED\n",
                       int(index));
      return;
    }
    // Nothing left behind the position: the next call starts over.
    remote->tricklePosition = 0;
  }
}
