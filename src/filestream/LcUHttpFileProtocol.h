#pragma once
#include <cstdint>

#include "filestream/LcUFileMetaDataCache.h"
#include "filestream/LcUFileProtocol.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUCriticalSection.h"

class LcUURL;

// Files on web servers, "http" and "https": their size and version from a
// HEAD (or a GET of two bytes), and their bytes by ranged GETs, each
// download worker on a connection of its own.
class LcUHttpFileProtocol : public LcUFileProtocol {
public:
  // From URL, user and password to 0 (credentials given), 1 (refuse) or
  // anything else (leave as is).
  typedef int32_t (*CredentialCallback)(const char16_t* url, LcUString& user, LcUString& password);
  enum : uint32_t { eMETADATA_LIFETIME_SECONDS = 30, eATTEMPTS = 3, eBAD_GATEWAY_RETRIES = 3 };
  enum InfoMode { eINFO_GET = 1, eINFO_HEAD_THEN_GET = 2 };

  // Registers one protocol under "http" and "https".
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  static void SetCredentialCallback(CredentialCallback callback);
  static CredentialCallback GetCredentialCallback();
  // The credentials of the URL itself, when both are there.
  static int32_t DefaultCredentials(const char16_t* url, LcUString& user, LcUString& password);

  LcUHttpFileProtocol() = default;
  ~LcUHttpFileProtocol() override;

  bool OpenInetHandle();
  // For the connections made after it; a stalled server fails in bounded time.
  void SetTimeouts(uint32_t connectMs, uint32_t receiveMs);

  bool CanDownload() override { return true; }
  bool CanStream() override { return true; }
  bool CanDownloadToSystemCache() override { return true; }
  bool IsRemote() override { return true; }
  bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) override;
  // extraHeaders: CRLF-separated lines sent along with a GET.
  bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata, const char16_t* extraHeaders, InfoMode mode);
  bool DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) override;
  bool DownloadToCacheFile(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) override;
  bool ReservedQuery() override { return false; }
  void* OpenHandle(const char16_t* url, bool forWriting) override;
  bool ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                void* buffer) override;
  bool WriteFile(void*, int64_t, uint32_t, const void*) override { return false; }
  bool CloseHandle(void* handle) override;
  bool HasThreadHandles() override { return true; }
  int32_t ReadRange(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size, void* buffer,
                    int64_t* totalSize) override;
  void* CreateThreadHandle(void* handle) override;
  bool DestroyThreadHandle(void* threadHandle) override;
  void* CreateRequest(void* handle, int64_t offset, uint32_t size) override;
  bool DestroyRequest(void* request) override;
  bool RebaseURL(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                 LcUString& out) override;
  bool ResolveURL(const char16_t* base, const char16_t* relative, LcUString& out) override;
  // The URL requests go to; this protocol asks nothing and gives url.
  virtual bool GetEffectiveURL(const char16_t* url, LcUString& out, int32_t mode);

private:
  struct Handle;
  struct ThreadHandle;
  struct Request;
  enum Answer { eANSWER_VALUES, eANSWER_RETRY_GET, eANSWER_FAILED };

  void* Connect(const LcUURL& url, const char16_t* context, uint32_t& error);
  Answer ReadAnswer(void* request, void* connection, const char16_t* url, bool get, bool canRetryGet,
                    LcUFileMetaData& metadata);
  bool SendInfoRequest(void* connection, const LcUURL& url, bool get, const LcUString& headers, void*& request);

  LcUCriticalSection sessionLock;
  void* session = nullptr;
  uint32_t connectMs = 0;
  uint32_t receiveMs = 0;
  LcUString userAgent;
  LcUFileMetaDataCache metadataCache{eMETADATA_LIFETIME_SECONDS};
};
