#include <algorithm>
#include <cstdio>

#include "environment/LcUSysFile.h"
#include "filestream/LcUAsyncOpenAction.h"
#include "filestream/LcUCacheFile.h"
#include "filestream/LcUCacheManager.h"
#include "filestream/LcUFileAction.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcUInternetAction.h"
#include "filestream/LcUSizedObject.h"
#include "filestream/LcUURL.h"
#include "foundation/LcUError.h"

namespace {
const uint32_t kWriting = LcUFileURLFile::eOPEN_WRITE | LcUFileURLFile::eOPEN_WRITE_APPEND;

}  // namespace

// A file open with other flags, or whose open failed, is not shared.
LcUFileURLFile* LcUFileURLImpl::FindExisting(const char16_t* url, uint32_t flags, bool wait) {
  LcUFileURLFile** found = openFiles.Find(url);
  if (!found) found = openingFiles.Find(url);
  if (!found) return nullptr;
  LcUFileURLFile* file = *found;
  bool matches = file->flags == flags || (file->flags == (LcUFileURLFile::eOPEN_READ | LcUFileURLFile::eOPEN_TEMPORARY) &&
                                          flags == LcUFileURLFile::eOPEN_READ);
  // While an open is pending, its outcome belongs to the worker.
  if (!matches || (!file->record.action && file->openFailed)) return nullptr;
  if (file->record.action) file->record.action->cancelled = false;
  ++file->refs;
  while (wait && file->record.action)
    if (!m_open_queue.ProcessFinished()) m_open_queue.WaitForAction();
  return file;
}

LcUFileURLFile* LcUFileURLImpl::Open(const char16_t* url, const char16_t*, uint32_t flags, int32_t share) {
  if (!url) return nullptr;
  if (openFiles.Contains(url) || openingFiles.Contains(url)) {
    LcUFileURLFile* file = FindExisting(url, flags, true);
    if (file && file->openFailed) {
      Close(file);
      return nullptr;
    }
    return file;
  }
  LcUFileURLFile* file = LcUSizedObject::New<LcUFileURLFile>(this, url, flags);
  if (!OpenInto(file, share)) {
    LcUSizedObject::Delete(file);
    return nullptr;
  }
  openFiles.Set(url, file);
  Opened(file);
  return file;
}

// Touches only the file, its protocol and the disk: it runs on an open
// worker too.
bool LcUFileURLImpl::OpenInto(LcUFileURLFile* file, int32_t share) {
  const char16_t* url = file->url.Get();
  LcUURL parsed(url, false);
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->FindForURL(url);
  if (!protocol) return false;
  bool temporary = (file->flags & LcUFileURLFile::eOPEN_TEMPORARY) != 0;
  bool writable = (file->flags & kWriting) != 0;
  bool useLocal = true;
  if (protocol->IsRemote()) {
    LcUFileMetaData info;
    if (!protocol->GetFileInfo(url, info) || !info.Has(LcUFileMetaData::eFILE_SIZE)) return false;
    file->size = info.GetFileSize();
    useLocal = protocol->UsesLocalCache() || !protocol->CanStream();
    LcUCacheFile cache;
    if (useLocal) {
      LcUCacheManager* cacheManager = LcUCacheManager::GetInstance();
      if (!cacheManager || !cacheManager->GetCacheFile(url, protocol, info, nullptr, true, cache)) return false;
      file->localPath = cache.path;
      file->cacheLock = cache.TakeLock();
      file->temporaryLocal = cache.temporary;
    }
    if (!useLocal || cache.stream) {
      file->remote = LcUSizedObject::New<LcUFileURLRemote>(file->size, useLocal);
      if (!file->remote) return false;
      file->remote->statePath = cache.statePath;
      if (cache.loadState) file->remote->Load(cache.statePath.Get());
    }
    file->readAccess = !(file->remote && file->remote->Lacks()) && !writable;
  } else {
    bool readOnly = false;
    if (!LcUFileProtocol::GetFileSize(url, &file->size, &readOnly)) return false;
    if (parsed.IsFileScheme())
      parsed.GetLocalPath(file->localPath);
    else
      file->localPath = url;
    temporary = temporary || readOnly;
    file->readAccess = readOnly || !writable;
  }
  if (useLocal) {
    int hints = LcUSysFileHandle::eHINT_RANDOM | (file->flags & LcUFileURLFile::eOPEN_TEMPORARY || file->temporaryLocal
                                                      ? LcUSysFileHandle::eHINT_TEMPORARY
                                                      : 0);
    if (!file->local.Open(file->localPath.Get(),
                          file->readAccess ? LcUSysFileHandle::eACCESS_READ : LcUSysFileHandle::eACCESS_READ_WRITE,
                          LcUSysFileHandle::eOPEN_ALWAYS, LcUSysFileHandle::eMODE_BINARY, share, hints,
                          LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE)) {
      LcUSizedObject::Delete(file->remote);
      if (file->temporaryLocal) LcUSysFile::Delete(file->localPath.Get(), true);
      return false;
    }
    // Blocks move whole; a stream buffer would only hold back what the disk
    // is to show.
    std::setvbuf(file->local.GetStream(), nullptr, _IONBF, 0);
  }
  file->temporaryWritable = temporary && writable;
  if (file->flags & LcUFileURLFile::eOPEN_WRITE) {
    uint32_t count = uint32_t(file->size / eBLOCK_SIZE) + 1;
    file->neverWritten = LcUBitArray(count);
    for (uint32_t i = 0; i < count; ++i) file->neverWritten.Set(i);
    if (file->flags & LcUFileURLFile::eOPEN_ORDER_TABLE)
      file->orderTable = static_cast<uint32_t*>(LcUMemory::Alloc(uint64_t(count) * 4, 4, 0));
  }
  if (LcUFileURLRemote* remote = file->remote) {
    remote->protocol = protocol;
    remote->handle = protocol->OpenHandle(url, false);
    for (int32_t i = 0; i < eDOWNLOAD_THREADS; ++i) remote->threadHandles[i] = protocol->CreateThreadHandle(remote->handle);
  }
  return true;
}

// What only the owner's thread may do once a file is open.
void LcUFileURLImpl::Opened(LcUFileURLFile* file) {
  if (file->flags & LcUFileURLFile::eOPEN_WRITE_APPEND) {
    if (file->size != 0)
      LcUError::LogF("LcUFileURL- eOPEN_WRITE_APPEND only implemented for initially empty files\n");
    else
      StartAppendBlock(file);
  }
  if (file->remote) {
    lastDemand = clock();
    if (file->remote->keepsLocalCopy && file->remote->Lacks()) trickleWanted = true;
  }
  SendStatus(false);
}

void LcUFileURLImpl::StartAppendBlock(LcUFileURLFile* file) {
  LcUFileURLBlock* block = file->GetBlock(uint32_t(file->size / eBLOCK_SIZE));
  if (!block || !GetBuffer(block)) return;
  block->state = LcUFileURLBlock::eVALID;
  AddRef(block);
  file->appendBlock = block;
}

void LcUFileURLImpl::ReleaseAppendBlock(LcUFileURLFile* file) {
  if (!file->appendBlock) return;
  LcUFileURLBlock* block = file->appendBlock;
  file->appendBlock = nullptr;
  Drop(block);
}

LcUFileURLFile::HandleRecord* LcUFileURLImpl::BeginOpen(const char16_t* url, uint32_t flags, int32_t share) {
  if (!url) return nullptr;
  if (openFiles.Contains(url) || openingFiles.Contains(url)) {
    LcUFileURLFile* file = FindExisting(url, flags, false);
    return file ? &file->record : nullptr;
  }
  LcUFileURLFile* file = LcUSizedObject::New<LcUFileURLFile>(this, url, flags);
  LcUAsyncOpenAction* action = new LcUAsyncOpenAction(this, file, share);
  file->record.action = action;
  openingFiles.Set(url, file);
  if (!m_open_queue.AddAction(action)) {
    openingFiles.Erase(url);
    delete action;
    LcUSizedObject::Delete(file);
    return nullptr;
  }
  return &file->record;
}

void LcUFileURLImpl::FinishOpen(LcUAsyncOpenAction* action) {
  LcUFileURLFile* file = action->file;
  file->record.action = nullptr;
  openingFiles.Erase(file->url.Get());
  if (action->cancelled) {
    Destroy(file);
  } else if (!file->openFailed) {
    openFiles.Set(file->url.Get(), file);
    Opened(file);
  }
}

bool LcUFileURLImpl::IsOpened(LcUFileURLFile::HandleRecord* record) {
  m_open_queue.ProcessFinished();
  return record->action == nullptr;
}

LcUFileURLFile* LcUFileURLImpl::WaitOpened(LcUFileURLFile::HandleRecord* record) {
  while (!IsOpened(record)) m_open_queue.WaitForAction();
  if (record->file->openFailed) return nullptr;
  ++record->file->refs;
  return record->file;
}

void LcUFileURLImpl::CloseAsync(LcUFileURLFile::HandleRecord* record, LcUFileURLFile* file) {
  if (file) Close(file);
  Close(record->file);
}

void LcUFileURLImpl::Close(LcUFileURLFile* file) {
  if (!file || --file->refs > 0) return;
  if (file->record.action) {
    file->record.action->cancelled = true;
    return;
  }
  LcUFileURLFile** open = openFiles.Find(file->url.Get());
  if (open && *open == file) openFiles.Erase(file->url.Get());
  SendStatus(false);
  Destroy(file);
}

LcUFileURLFile* LcUFileURLImpl::FindOpen(const char16_t* url) {
  LcUFileURLFile** found = openFiles.Find(url);
  return found ? *found : nullptr;
}

bool LcUFileURLImpl::GetDownloadState(const char16_t* url, uint32_t* blockCount, uint32_t* downloadedCount,
                                      LcUBitArray* bits) {
  LcUFileURLFile* file = FindOpen(url);
  if (!file || !file->remote) return false;
  if (blockCount) *blockCount = file->remote->blockCount;
  if (downloadedCount) *downloadedCount = file->remote->downloadedCount;
  if (bits) *bits = file->remote->bits;
  return true;
}

// Its own queued work goes; other files' queued work goes on in order.
void LcUFileURLImpl::Destroy(LcUFileURLFile* file) {
  file->closing = true;
  LcUFileURLRemote* remote = file->remote;
  RunCompletions();
  if (remote && remote->downloadsInFlight)
    CancelQueued<LcUInternetAction>(m_download_queue, [this, file](LcUInternetAction* action) {
      if (action->blocks[0]->file != file) return false;
      CancelDownload(action);
      return true;
    });
  ReleaseAppendBlock(file);
  bool temporary = (file->flags & LcUFileURLFile::eOPEN_TEMPORARY) != 0 || file->temporaryLocal;
  bool reading = false;
  for (auto* e = file->blocks.First(); e; e = e->next) {
    LcUFileURLBlock* block = e->value;
    reading = reading || block->state == LcUFileURLBlock::eREADING;
    if (block->state != LcUFileURLBlock::eDIRTY) continue;
    if (temporary) {
      block->state = LcUFileURLBlock::eVALID;
      if (block->list) block->list->Remove(block);
    } else {
      StartWrite(block);
    }
  }
  if (reading && file->fileActions)
    for (LcUActionQueue* queue : {&m_action_queue, &m_temp_action_queue})
      CancelQueued<LcUFileAction>(*queue, [this, file](LcUFileAction* action) {
        if (action->block->file != file || action->block->state != LcUFileURLBlock::eREADING) return false;
        CancelFileAction(action);
        return true;
      });
  WaitWhile([file, remote] { return file->fileActions > 0 || (remote && remote->downloadsInFlight > 0); });
  file->local.Close();
  if (temporary && !file->localPath.IsEmpty()) LcUSysFile::Delete(file->localPath.Get(), true);
  if (remote) {
    // A block whose write failed is not in the local copy after all.
    for (auto* e = file->blocks.First(); e; e = e->next)
      if (e->value->state == LcUFileURLBlock::eDIRTY) remote->MarkMissing(e->value->index);
    for (void* thread : remote->threadHandles)
      if (thread) remote->protocol->DestroyThreadHandle(thread);
    if (remote->handle) remote->protocol->CloseHandle(remote->handle);
    if (!remote->statePath.IsEmpty()) remote->Save(remote->statePath.Get());
  }
  ForgetBlocks(file);
  LcUSizedObject::Delete(file);
}

void LcUFileURLImpl::ForgetBlocks(LcUFileURLFile* file) {
  if (lockFile == file) lockFile = nullptr;
  for (BlockQueue* queue : {&requests, &buffer})
    queue->erase(std::remove_if(queue->begin(), queue->end(), [file](LcUFileURLBlock* b) { return b->file == file; }),
                 queue->end());
  while (auto* e = file->blocks.First()) DeleteBlock(e->value);
}
