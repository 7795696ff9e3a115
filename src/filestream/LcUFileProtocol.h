#pragma once
#include <cstdint>
#include "foundation/LcUString.h"

class LcUDownloadProgressSink;
class LcUFileMetaData;

// A kind of location that files can be read from: the local file system,
// HTTP. The block cache reaches a location only through these calls.
// Handles, thread handles and requests are opaque to callers.
class LcUFileProtocol {
public:
  enum { ePREFETCH_BLOCKS = 16 };
  enum LocationKind { eLOCATION_LOCAL = 0, eLOCATION_REMOTE = 1, eLOCATION_NONE = 2 };

  virtual ~LcUFileProtocol();
  virtual bool CanDownload() = 0;
  virtual bool CanStream() = 0;
  virtual bool CanDownloadToSystemCache() = 0;
  virtual bool UsesLocalCache();
  virtual bool IsRemote() = 0;
  virtual bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) = 0;
  // sink, when given, hears the download's progress.
  virtual bool DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) = 0;
  virtual bool DownloadToCacheFile(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) = 0;
  virtual bool ReservedQuery() = 0;
  virtual void* OpenHandle(const char16_t* url, bool forWriting) = 0;
  // True only when all size bytes arrived.
  virtual bool ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                        void* buffer) = 0;
  virtual bool WriteFile(void* handle, int64_t offset, uint32_t size, const void* buffer) = 0;
  virtual bool CloseHandle(void* handle) = 0;
  // The blocks that may be fetched along with block; returns last.
  virtual int32_t GetPrefetchRange(void* handle, int32_t block, int32_t& first, int32_t& last);
  virtual bool HasThreadHandles();
  // The protocol's own ranged read; -1 where it has none.
  virtual int32_t ReadRange(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                            void* buffer, int64_t* totalSize);
  virtual void* CreateThreadHandle(void* handle);
  virtual bool DestroyThreadHandle(void* threadHandle);
  virtual void* CreateRequest(void* handle, int64_t offset, uint32_t size);
  virtual bool DestroyRequest(void* request);
  virtual bool RebaseURL(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                         LcUString& out) = 0;
  virtual bool ResolveURL(const char16_t* base, const char16_t* relative, LcUString& out) = 0;
  virtual void GetLeafName(const char16_t* url, LcUString& out);
  virtual void GetDisplayName(const char16_t* url, LcUString& out);

  // Over a URL text, through the protocol that takes it.
  // False without a protocol, a size or file information; readOnly is set
  // only when permissions are known.
  static bool GetFileSize(const char16_t* url, uint64_t* size, bool* readOnly);
  static LocationKind GetLocationKind(const char16_t* url);
  // Without a protocol the URL itself.
  static void GetLeafNameOf(const char16_t* url, LcUString& out);
  static void GetDisplayNameOf(const char16_t* url, LcUString& out);
  // False, with out empty, without a protocol for the URL concerned.
  static bool Rebase(const char16_t* oldBase, const char16_t* target, const char16_t* newBase, LcUString& out);
  static bool Resolve(const char16_t* base, const char16_t* relative, LcUString& out);
};
