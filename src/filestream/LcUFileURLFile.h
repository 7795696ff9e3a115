#pragma once
#include <cstdint>

#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileURLBlock.h"
#include "foundation/LcUFileLock.h"
#include "foundation/LcUString.h"
#include "serial/LcUBitArray.h"
#include "serial/LcUDict.h"

class LcUFileURLImpl;
class LcUFileURLRemote;
class LcUAsyncOpenAction;

// One open streamed file with a reference count. The engine owns it; all
// but the open itself is touched on the owner's thread only.
class LcUFileURLFile {
public:
  enum : uint32_t {
    eOPEN_READ = 1,
    eOPEN_TEMPORARY = 2,
    eOPEN_WRITE = 4,
    eOPEN_WRITE_APPEND = 8,
    eOPEN_ORDER_TABLE = 16,
  };

  // What BeginOpen hands out: the file and its pending open.
  struct HandleRecord {
    LcUFileURLFile* file;
    LcUAsyncOpenAction* action;
  };

  LcUFileURLFile(LcUFileURLImpl* engine, const char16_t* url, uint32_t flags);
  ~LcUFileURLFile();
  LcUFileURLFile(const LcUFileURLFile&) = delete;
  LcUFileURLFile& operator=(const LcUFileURLFile&) = delete;

  uint64_t GetSize() const { return size; }
  const LcUString& GetURL() const { return url; }
  uint32_t GetFlags() const { return flags; }
  int32_t GetRefs() const { return refs; }
  LcUFileURLRemote* GetRemote() const { return remote; }
  uint32_t GetBlockCount() const { return uint32_t((size + LcUFileURLBlock::eSIZE - 1) / LcUFileURLBlock::eSIZE); }
  // Where the block lies in the local file, in blocks.
  uint32_t SlotOf(uint32_t block) const { return orderTable && block < neverWritten.Count() ? orderTable[block] : block; }
  bool IsNeverWritten(uint32_t block) const { return neverWritten.Test(block); }
  // Clears the mark and gives the block the next slot of the order table.
  void MarkWritten(uint32_t block);

  LcUFileURLBlock* FindBlock(uint32_t index);
  // Null when memory ran out.
  LcUFileURLBlock* GetBlock(uint32_t index);
  void DeleteBlock(LcUFileURLBlock* block);

  LcUFileURLImpl* engine;
  int32_t refs = 1;
  LcUString url;
  LcUString localPath;
  uint32_t flags;
  bool readAccess = false;
  bool temporaryWritable = false;
  bool openFailed = false;
  bool closing = false;
  uint64_t size = 0;
  uint64_t bytesRead = 0;
  LcUFileURLRemote* remote = nullptr;
  LcUSysFileHandle local;
  HandleRecord record;
  LcUBitArray neverWritten;
  uint32_t* orderTable = nullptr;
  uint32_t nextSlot = 0;
  LcUFileURLBlock* appendBlock = nullptr;
  LcUDict<uint64_t, LcUFileURLBlock*> blocks;
  int32_t fileActions = 0;
  // The cache entry's, held until the file is gone.
  LcUFileLock* cacheLock = nullptr;
  // The cache gave a temporary local file: it goes at close.
  bool temporaryLocal = false;
};
