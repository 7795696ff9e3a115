#include "filestream/LcUHttpFileProtocol.h"
#include "filestream/LcUHttpFileHandles.h"

#include "filestream/LcUHttpHeaders.h"
#include "filestream/LcUSizedObject.h"
#include "filestream/LcUSysHttp.h"
#include "filestream/LcUURL.h"
#include "foundation/LcUError.h"

namespace {
LcUHttpFileProtocol::CredentialCallback credentialCallback = &LcUHttpFileProtocol::DefaultCredentials;

bool IsSecure(const LcUURL& url) { return LcUString::CompareNoCase(url.GetParts().scheme.Get(), u"https") == 0; }
}  // namespace

void LcUHttpFileProtocol::SetCredentialCallback(CredentialCallback callback) { credentialCallback = callback; }

LcUHttpFileProtocol::CredentialCallback LcUHttpFileProtocol::GetCredentialCallback() { return credentialCallback; }

int32_t LcUHttpFileProtocol::DefaultCredentials(const char16_t* url, LcUString& user, LcUString& password) {
  LcUURLParts parts;
  if (!LcUURL::Parse(url, parts) || parts.user.IsEmpty() || parts.password.IsEmpty()) return 1;
  user = parts.user;
  password = parts.password;
  return 0;
}

LcUHttpFileProtocol::~LcUHttpFileProtocol() {
  if (session) LcUSysHttp::CloseSession(session);
}

bool LcUHttpFileProtocol::OpenInetHandle() {
  sessionLock.Lock();
  if (!session) {
    uint32_t error = 0;
    session = LcUSysHttp::OpenSession(u"Hollimar-Tarnwicket", error);
    if (session && connectMs) LcUSysHttp::SetTimeouts(session, connectMs, receiveMs);
    if (!session) LcUError::LogF("LcUHttpFileProtocol::OpenInetHandle InternetOpen failed: %d\n", int(error));
  }
  bool open = session != nullptr;
  sessionLock.Unlock();
  return open;
}

void LcUHttpFileProtocol::SetTimeouts(uint32_t connect, uint32_t receive) {
  sessionLock.Lock();
  connectMs = connect;
  receiveMs = receive;
  if (session) LcUSysHttp::SetTimeouts(session, connect, receive);
  sessionLock.Unlock();
}

void* LcUHttpFileProtocol::Connect(const LcUURL& url, const char16_t* context, uint32_t& error) {
  void* connection = nullptr;
  for (uint32_t attempt = 0; !connection && attempt < eATTEMPTS; ++attempt) {
    connection = LcUSysHttp::Connect(session, url.GetParts(), error);
    if (!connection && error != LcUSysHttp::eERROR_TIMEOUT) break;
  }
  if (!connection && error != LcUSysHttp::eERROR_TIMEOUT)
    LcUError::LogF(u"LcUHttpFileProtocol::%s InternetConnect for %s failed: %d\n", context, url.GetText().Get(),
                   int(error));
  return connection;
}

bool LcUHttpFileProtocol::GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) {
  return GetFileInfo(url, metadata, nullptr, eINFO_HEAD_THEN_GET);
}

bool LcUHttpFileProtocol::SendInfoRequest(void* connection, const LcUURL& url, bool get, const LcUString& headers,
                                          void*& request) {
  uint32_t error = 0;
  request = nullptr;
  LcUString path;
  LcUHttpHeaders::RequestTarget(url.GetRequestPath().Get(), path);
  for (uint32_t attempt = 0; !request && attempt < eATTEMPTS; ++attempt) {
    request = LcUSysHttp::OpenRequest(connection, get ? u"GET" : u"HEAD", path.Get(), IsSecure(url), error);
    if (!request && error != LcUSysHttp::eERROR_TIMEOUT) break;
  }
  if (!request) {
    if (error != LcUSysHttp::eERROR_TIMEOUT)
      LcUError::LogF(u"LcUHttpFileProtocol::GetFileInfo InternetOpen for %s failed: %d\n", url.GetText().Get(),
                     int(error));
    return false;
  }
  // HEAD goes bare: the range and the caller's lines only ride on a GET.
  if (LcUSysHttp::SendRequest(request, get ? headers.Get() : nullptr, nullptr, 0, error)) return true;
  LcUError::LogF(u"LcUHttpFileProtocol::GetFileInfo HttpSendRequest for %s failed: %d\n", url.GetText().Get(),
                 int(error));
  return false;
}

LcUHttpFileProtocol::Answer LcUHttpFileProtocol::ReadAnswer(void* request, void* connection, const char16_t* url,
                                                            bool get, bool canRetryGet, LcUFileMetaData& metadata) {
  LcUString raw;
  LcUSysHttp::QueryRawHeaders(request, raw);
  uint32_t status = 0, error = 0;
  for (uint32_t resent = 0;; ++resent) {
    if (!LcUSysHttp::QueryStatus(request, status, error)) {
      LcUError::LogF(
          u"LcUHttpFileProtocol::GetFileInfo HttpQueryInfo Status Code for %s failed: %d. Full headers follow\n", url,
          int(error));
      LcUError::LogF(u"LcUHttpFileProtocol::GetFileInfo HttpQueryInfo Status Code Full Headers: %s\n", raw.Get());
      return eANSWER_FAILED;
    }
    if (status != 502 || resent == eBAD_GATEWAY_RETRIES) break;
    if (!LcUSysHttp::SendRequest(request, nullptr, nullptr, 0, error)) return eANSWER_FAILED;
    LcUSysHttp::QueryRawHeaders(request, raw);
  }
  if (status == 405) return canRetryGet ? eANSWER_RETRY_GET : eANSWER_FAILED;
  if (status == 401 || status == 407) {
    LcUString user, password;
    if (credentialCallback && credentialCallback(url, user, password) == 0)
      LcUSysHttp::SetCredentials(connection, status == 407, user.Get(), password.Get());
    return eANSWER_FAILED;
  }
  if (status == 502) return eANSWER_FAILED;
  if (status != 200 && status != 206) {
    LcUString text;
    text.Format(u"%u", status);
    LcUError::TraceF(5, u"LcUHttpFileProtocol::GetFileInfo HttpQueryInfo Unhandled Status Code for %s: %s\n", url,
                     text.Get());
    return eANSWER_FAILED;
  }
  LcUString value;
  uint64_t size = 0;
  if (get && status == 206) {
    if (LcUHttpHeaders::Find(raw.Get(), u"Content-Range", value) &&
        LcUHttpHeaders::GetFirstRangeTotal(value.Get(), size))
      metadata.SetFileSize(size);
  } else if (LcUHttpHeaders::GetContentLength(raw.Get(), size)) {
    metadata.SetFileSize(size);
  }
  if (LcUHttpHeaders::Find(raw.Get(), u"ETag", value)) metadata.SetRevisionId(value.Get());
  int64_t modified = 0;
  if (LcUHttpHeaders::Find(raw.Get(), u"Last-Modified", value) && LcUHttpHeaders::ParseDate(value.Get(), modified))
    metadata.SetModificationTime(modified);
  return metadata.GetMask() ? eANSWER_VALUES : eANSWER_FAILED;
}

bool LcUHttpFileProtocol::GetFileInfo(const char16_t* text, LcUFileMetaData& metadata, const char16_t* extraHeaders,
                                      InfoMode mode) {
  if (metadataCache.Lookup(text, metadata)) return true;
  LcUURL url(text, false);
  if (!url.IsValid()) return false;
  url.Normalise();
  if (!OpenInetHandle()) return false;
  uint32_t error = 0;
  void* connection = Connect(url, u"GetFileInfo", error);
  if (!connection) return false;
  LcUString headers(u"Range: bytes=0-1");
  if (extraHeaders && *extraHeaders) {
    headers.Append(u"\r\n");
    headers.Append(extraHeaders);
  }
  LcUFileMetaData found;
  bool get = mode == eINFO_GET;
  Answer answer = eANSWER_FAILED;
  for (bool first = true;; first = false) {
    void* request = nullptr;
    if (SendInfoRequest(connection, url, get, headers, request))
      answer = ReadAnswer(request, connection, url.GetText().Get(), get, first && !get && mode == eINFO_HEAD_THEN_GET,
                          found);
    if (request) LcUSysHttp::CloseRequest(request);
    if (answer != eANSWER_RETRY_GET) break;
    get = true;
  }
  LcUSysHttp::CloseConnection(connection);
  if (answer != eANSWER_VALUES) return false;
  metadataCache.Store(text, found);
  metadata = found;
  return true;
}

void* LcUHttpFileProtocol::OpenHandle(const char16_t* text, bool forWriting) {
  LcUURL parsed(text, false);
  if (!parsed.IsValid() || !OpenInetHandle()) return nullptr;
  LcUString effective;
  LcUURL url;
  if (GetEffectiveURL(text, effective, 0)) {
    if (!url.Set(effective.Get(), false)) return nullptr;
  } else {
    url = parsed;
  }
  Handle* handle = LcUSizedObject::New<Handle>();
  if (!handle) return nullptr;
  handle->text = text;
  handle->url = url;
  return handle;
}

bool LcUHttpFileProtocol::CloseHandle(void* handle) {
  Handle* h = static_cast<Handle*>(handle);
  LcUSizedObject::Delete(h);
  return true;
}

void* LcUHttpFileProtocol::CreateThreadHandle(void* handle) {
  Handle* h = static_cast<Handle*>(handle);
  if (!h) return nullptr;
  uint32_t error = 0;
  void* connection = LcUSysHttp::Connect(session, h->url.GetParts(), error);
  if (!connection) {
    LcUError::LogF(u"LcUHttpFileProtocol::CreateThreadHandle InternetConnect for %s failed: %d\n", h->text.Get(),
                   int(error));
    return nullptr;
  }
  ThreadHandle* thread = LcUSizedObject::New<ThreadHandle>();
  if (!thread) {
    LcUSysHttp::CloseConnection(connection);
    return nullptr;
  }
  thread->secure = IsSecure(h->url);
  thread->connection = connection;
  return thread;
}

bool LcUHttpFileProtocol::DestroyThreadHandle(void* threadHandle) {
  ThreadHandle* thread = static_cast<ThreadHandle*>(threadHandle);
  if (!thread) return false;
  LcUSysHttp::CloseConnection(thread->connection);
  LcUSizedObject::Delete(thread);
  return true;
}

void* LcUHttpFileProtocol::CreateRequest(void* handle, int64_t, uint32_t) {
  Handle* h = static_cast<Handle*>(handle);
  if (!h) return nullptr;
  Request* request = LcUSizedObject::New<Request>();
  if (!request) return nullptr;
  request->url = h->text;
  LcUHttpHeaders::RequestTarget(h->url.GetRequestPath().Get(), request->path);
  return request;
}

bool LcUHttpFileProtocol::DestroyRequest(void* request) {
  Request* r = static_cast<Request*>(request);
  LcUSizedObject::Delete(r);
  return true;
}

bool LcUHttpFileProtocol::GetEffectiveURL(const char16_t* url, LcUString& out, int32_t) {
  out = url;
  return true;
}

bool LcUHttpFileProtocol::RebaseURL(const char16_t* oldBase, const char16_t* target, const char16_t* newBase,
                                    LcUString& out) {
  return LcUURL::Rebase(oldBase, target, newBase, out);
}

bool LcUHttpFileProtocol::ResolveURL(const char16_t* base, const char16_t* relative, LcUString& out) {
  return LcUURL::Resolve(base, relative, out);
}

bool LcUHttpFileProtocol::DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) {
  return LcUSysHttp::Download(url, path, sink);
}

bool LcUHttpFileProtocol::DownloadToCacheFile(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) {
  return LcUSysHttp::DownloadToCache(url, sink, path);
}
