#pragma once
#include <cstdint>
#include <deque>
#include <vector>

#include "filestream/LcUFileURLBlockList.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUInternetActionQueue.h"
#include "foundation/LcUActionQueue.h"
#include "foundation/LcUAllocator.h"
#include "foundation/LcUPageOut.h"
#include "foundation/LcUString.h"
#include "serial/LcUDict.h"

class LcUAsyncOpenAction;
class LcUFileAction;
class LcUInternetAction;
class LcULocalCopy;
class LcUFileURLCompletionHook;
class LcUFileURLObserver;

// The process's block cache: every open streamed file, its blocks, the
// queues that read, write and download them, and the trickle. It has no
// lock: one thread makes every call and runs every completion, page-out
// included.
class LcUFileURLImpl : public LcUPageOut {
public:
  enum : int32_t {
    eBLOCK_SIZE = 65536,
    eMIN_BUFFER_TARGET = 4,
    eFILE_ACTION_LIMIT = 10,
    eWRITE_ACTION_LIMIT = 2,
    eDOWNLOAD_ACTION_LIMIT = 10,
    eDOWNLOAD_THREADS = 4,
    eRETRY_LIMIT = 3,
    eDIRTY_FLUSH_THRESHOLD = 64,
    eTRICKLE_IDLE_TIME = 5000,
    eSTATUS_PERIOD = 75,
    eMULTI_BLOCK_LIMIT = 16,
    eOPEN_QUEUE_PLACES = 32,
    eOPEN_THREADS = 3,
  };
  enum Result : int32_t { eDONE = 0, eWOULD_BLOCK = 1, eFAILED = 2, eUNAVAILABLE = 3 };
  enum Mode : int32_t { eBLOCKING = 0, eNON_BLOCKING = 1 };
  // Milliseconds on a monotonic clock.
  typedef uint64_t (*Clock)();
  // Whether memory is short; page-out says so unless a test does.
  typedef bool (*MemoryTest)();

  // Mode 1 caches without bound until memory is short, mode 2 keeps no
  // more than the buffer target, any other decides by the address space.
  explicit LcUFileURLImpl(int32_t cacheMode);
  // Closes what is still open.
  ~LcUFileURLImpl() override;
  LcUFileURLImpl(const LcUFileURLImpl&) = delete;
  LcUFileURLImpl& operator=(const LcUFileURLImpl&) = delete;

  // A file with one reference, shared with an open one of the same URL
  // and flags; null on failure or when the URL is open with other flags.
  LcUFileURLFile* Open(const char16_t* url, const char16_t* headers, uint32_t flags, int32_t share);
  // The record holds the file's own reference until CloseAsync.
  LcUFileURLFile::HandleRecord* BeginOpen(const char16_t* url, uint32_t flags, int32_t share);
  bool IsOpened(LcUFileURLFile::HandleRecord* record);
  // The file with a reference of the caller's, or null if the open failed.
  LcUFileURLFile* WaitOpened(LcUFileURLFile::HandleRecord* record);
  void Close(LcUFileURLFile* file);
  // Closes file, which may be null, then the record's own reference.
  void CloseAsync(LcUFileURLFile::HandleRecord* record, LcUFileURLFile* file);
  LcUFileURLFile* FindOpen(const char16_t* url);
  bool GetDownloadState(const char16_t* url, uint32_t* blockCount, uint32_t* downloadedCount, LcUBitArray* bits);
  // A whole local copy of the file, or null; the caller releases it.
  LcULocalCopy* GetLocalCopy(const char16_t* url, bool forDownload, const char16_t* headers);
  // Deletes the file too if asked and the copy is the caller's alone.
  void ReleaseLocalCopy(LcULocalCopy* copy, bool deleteFile);
  // The newest complete copy in the local cache, without asking the location.
  bool FindBestCachedCopy(const char16_t* url, LcUString& path);

  int32_t Read(LcUFileURLFile* file, int32_t mode, uint64_t offset, void* buffer, uint32_t size);
  int32_t Write(LcUFileURLFile* file, int32_t mode, uint64_t offset, const void* data, uint32_t size);
  void PrepareRead(LcUFileURLFile* file, uint64_t offset, uint64_t size) { Prepare(file, offset, size, false); }
  void PrepareWrite(LcUFileURLFile* file, uint64_t offset, uint64_t size) { Prepare(file, offset, size, true); }
  int32_t IsReadReady(LcUFileURLFile* file, uint64_t offset, uint64_t size) {
    return WaitForRange(file, offset, size, false);
  }
  int32_t IsWriteReady(LcUFileURLFile* file, uint64_t offset, uint64_t size) {
    return WaitForRange(file, offset, size, true);
  }
  void Lock(LcUFileURLFile* file, uint64_t offset, uint64_t size);
  void Unlock(LcUFileURLFile* file);
  // True while work remains.
  bool Poll();
  // Drops every request and buffer entry and cancels all queued work.
  void CancelAll();
  // Pass 1 frees clean blocks, pass 8 also writes the dirty ones; no other
  // pass does anything.
  int32_t PageOut(int32_t a, int32_t b, int32_t c, int32_t pass, LcUPageOutProgress* progress) override;

  void AddCompletionHook(LcUFileURLCompletionHook* hook);
  void RemoveCompletionHook(LcUFileURLCompletionHook* hook);
  void SetObserver(LcUFileURLObserver* observer, void* argument);
  void SetClock(Clock clock);
  void SetMemoryTest(MemoryTest test);

  bool IsOwnCaching() const { return ownCaching; }
  bool IsPending() const { return pending; }
  int32_t GetBufferTarget() const { return bufferTarget; }
  uint32_t GetAccessCount() const { return accessCount; }

private:
  friend class LcUFileAction;
  friend class LcUInternetAction;
  friend class LcUAsyncOpenAction;
  using BlockQueue = std::deque<LcUFileURLBlock*, LcUAllocator<LcUFileURLBlock*>>;
  template <typename T>
  using List = std::vector<T, LcUAllocator<T>>;

  // An action from its pool, or a new one.
  template <typename Action>
  Action* Take(List<Action*>& pool) {
    if (pool.empty()) return new Action(this);
    Action* action = pool.back();
    pool.pop_back();
    return action;
  }

  // Blocks and their memory.
  bool GetBuffer(LcUFileURLBlock* block);
  void FreeBuffer(LcUFileURLBlock* block);
  void DeleteBlock(LcUFileURLBlock* block);
  void AddRef(LcUFileURLBlock* block);
  void Drop(LcUFileURLBlock* block);
  void ReleaseBlock(LcUFileURLBlock* block);
  bool IsMemoryLow() const { return memoryTest(); }
  bool IsNetworkUp() const;

  // The scheduler.
  void Prepare(LcUFileURLFile* file, uint64_t offset, uint64_t size, bool forWrite);
  bool Update();
  void RunCompletions();
  LcUActionQueue& FileQueue(const LcUFileURLFile* file) {
    return file->temporaryWritable ? m_temp_action_queue : m_action_queue;
  }
  bool StartFileAction(LcUFileURLBlock* block, uint32_t state);
  bool StartWrite(LcUFileURLBlock* block);
  void FinishFileAction(LcUFileAction* action);
  // False when no dirty block got written.
  bool FlushDirty();
  // Keeps waiting while waiting() holds, running completions between.
  template <typename Waiting>
  void WaitWhile(Waiting waiting);
  template <typename Action, typename Cancel>
  static void CancelQueued(LcUActionQueue& queue, Cancel cancel);
  void CancelFileAction(LcUFileAction* action);

  // Downloads.
  bool TryCombinedDownload();
  // One action over count blocks from blocks[0]; false, all undone, when
  // the queue refused it.
  bool StartDownload(LcUFileURLBlock* const* blocks, uint32_t count);
  void FinishDownload(LcUInternetAction* action);
  void EndDownload(LcUInternetAction* action);
  void SetStates(LcUInternetAction* action, uint32_t state);
  void CancelDownload(LcUInternetAction* action);
  void Trickle();
  bool AnyRemoteLacks() const;

  // The reader's side.
  LcUFileURLBlock* SyncTo(LcUFileURLFile* file, uint32_t index);
  LcUFileURLBlock* FindInBuffer(const LcUFileURLFile* file, uint32_t index) const;
  void WaitForBlock(LcUFileURLBlock* block, bool forWrite);
  int32_t WaitForRange(LcUFileURLFile* file, uint64_t offset, uint64_t size, bool forWrite);
  int32_t Shrink(int32_t result);
  void SendStatus(bool force);

  // Opening and closing.
  LcUFileURLFile* FindExisting(const char16_t* url, uint32_t flags, bool wait);
  bool OpenInto(LcUFileURLFile* file, int32_t share);
  void Opened(LcUFileURLFile* file);
  void FinishOpen(LcUAsyncOpenAction* action);
  void StartAppendBlock(LcUFileURLFile* file);
  void ReleaseAppendBlock(LcUFileURLFile* file);
  void Destroy(LcUFileURLFile* file);
  void ForgetBlocks(LcUFileURLFile* file);

  LcUDict<LcUString, LcUFileURLFile*> openFiles;
  LcUDict<LcUString, LcUFileURLFile*> openingFiles;
  LcUFileURLObserver* observer = nullptr;
  void* observerArgument = nullptr;
  uint64_t lastStatusSlot = UINT64_MAX;
  bool pending = false;
  bool ownCaching;
  bool trickleWanted = false;
  LcUFileURLFile* lockFile = nullptr;
  uint32_t lockFirst = 0;
  uint32_t lockLast = 0;
  int32_t bufferTarget = eMIN_BUFFER_TARGET;
  BlockQueue buffer;
  BlockQueue requests;
  LcUFileURLBlockList dirty;
  LcUFileURLBlockList clean;
  int32_t fileActions = 0;
  int32_t writes = 0;
  int32_t downloads = 0;
  bool trickling = false;
  uint64_t lastDemand = 0;
  bool aborting = false;
  uint32_t accessCount = 0;
  List<LcUFileAction*> filePool;
  List<LcUInternetAction*> downloadPool;
  List<LcUFileURLCompletionHook*> hooks;
  Clock clock;
  MemoryTest memoryTest;
  // Last, so that they stop first while the engine still stands.
  LcUActionQueue m_action_queue;
  LcUActionQueue m_temp_action_queue;
  LcUInternetActionQueue m_download_queue;
  LcUActionQueue m_open_queue;
};

template <typename Waiting>
inline void LcUFileURLImpl::WaitWhile(Waiting waiting) {
  for (;;) {
    RunCompletions();
    if (!waiting()) return;
    if (!m_action_queue.WaitForAction() && !m_temp_action_queue.WaitForAction()) m_download_queue.WaitForAction();
  }
}

template <typename Action, typename Cancel>
inline void LcUFileURLImpl::CancelQueued(LcUActionQueue& queue, Cancel cancel) {
  LcUActionQueue::ActionList queued;
  queue.RemoveAll(queued, false);
  for (LcUAction* action : queued)
    if (!cancel(static_cast<Action*>(action))) queue.AddAction(action);
}
