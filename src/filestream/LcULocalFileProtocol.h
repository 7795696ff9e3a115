#pragma once
#include "filestream/LcUFileProtocol.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUCriticalSection.h"

// Files on the local file system, named by "file:" URLs or plain paths.
// A handle is one buffered stream with one position, so one lock covers
// every read and write on all of them.
class LcULocalFileProtocol : public LcUFileProtocol {
public:
  // Installs the protocol under "file", as the default for plain paths.
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  bool CanDownload() override { return false; }
  bool CanStream() override { return true; }
  bool CanDownloadToSystemCache() override { return false; }
  bool IsRemote() override { return false; }
  // Modification time and size only.
  bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) override;
  bool DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) override { return false; }
  bool DownloadToCacheFile(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) override { return false; }
  bool ReservedQuery() override { return false; }
  // Writing opens for reading as well and keeps what the file holds.
  void* OpenHandle(const char16_t* url, bool forWriting) override;
  bool ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                void* buffer) override;
  bool WriteFile(void* handle, int64_t offset, uint32_t size, const void* buffer) override;
  bool CloseHandle(void* handle) override;
  bool RebaseURL(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                 LcUString& out) override;
  bool ResolveURL(const char16_t* base, const char16_t* relative, LcUString& out) override;

private:
  LcUCriticalSection lock;
};
