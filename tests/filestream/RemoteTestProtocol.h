#pragma once
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "filestream/LcUFileProtocol.h"

// A folder of local files behind the protocol interface, saying it is
// remote: "rtest://host/NAME" is FOLDER/NAME. Reads can be made to fail,
// to come up short or to wait until released; every call is counted.
class RemoteTestProtocol : public LcUFileProtocol {
public:
  struct Call {
    int64_t offset;
    uint32_t size;
    std::string path;
  };

  explicit RemoteTestProtocol(const std::u16string& folder) : folder(folder) {}

  // The next `count` reads at offset fail; -1 fails them all.
  void FailReads(int64_t offset, int32_t count);
  void ShortenReads(bool on);
  // Reads and file information wait while held.
  void Hold(bool on);
  // Each read and each file information takes this long, as over a slow
  // network.
  void SetLatency(std::chrono::milliseconds latency);
  // Without it the files are streamed and no local copy is kept.
  void SetUsesLocalCache(bool on) { localCache = on; }
  // File information gives the file's time unless turned off, and this
  // revision id unless it is empty.
  void SetTimes(bool on);
  void SetRevision(const std::u16string& id);
  // Whole downloads copy the file, or fail when told to.
  void SetCanDownload(bool on);
  void FailDownloads(bool on);
  int32_t Downloads();
  std::vector<Call> Reads();
  int32_t CountReads(int64_t offset);
  int32_t OpenThreadHandles();
  // Handles open now, and opened in all.
  int32_t OpenHandles();
  int32_t HandlesOpened();
  int32_t OpenRequests();

  bool CanDownload() override;
  bool CanStream() override { return true; }
  bool CanDownloadToSystemCache() override { return false; }
  bool UsesLocalCache() override { return localCache; }
  bool IsRemote() override { return true; }
  bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) override;
  bool DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink*) override;
  bool DownloadToCacheFile(const char16_t*, LcUDownloadProgressSink*, LcUString&) override { return false; }
  bool ReservedQuery() override { return false; }
  void* OpenHandle(const char16_t* url, bool forWriting) override;
  bool ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                void* buffer) override;
  bool WriteFile(void*, int64_t, uint32_t, const void*) override { return false; }
  bool CloseHandle(void* handle) override;
  void* CreateThreadHandle(void* handle) override;
  bool DestroyThreadHandle(void* threadHandle) override;
  void* CreateRequest(void* handle, int64_t offset, uint32_t size) override;
  bool DestroyRequest(void* request) override;
  bool RebaseURL(const char16_t*, const char16_t*, const char16_t*, LcUString&) override { return false; }
  bool ResolveURL(const char16_t*, const char16_t*, LcUString&) override { return false; }

private:
  std::string PathOf(const char16_t* url) const;
  void WaitWhileHeld(std::unique_lock<std::mutex>& guard);
  void Delay(std::unique_lock<std::mutex>& guard);

  std::u16string folder;
  std::mutex lock;
  std::condition_variable released;
  bool held = false;
  std::chrono::milliseconds latency{0};
  bool shortReads = false;
  bool localCache = true;
  bool times = true;
  std::u16string revision;
  bool canDownload = false;
  bool failDownloads = false;
  int32_t downloads = 0;
  std::map<int64_t, int32_t> failures;
  std::vector<Call> reads;
  int32_t threadHandles = 0;
  int32_t handles = 0;
  int32_t handlesOpened = 0;
  int32_t requests = 0;
};
