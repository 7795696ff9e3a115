#include "filestream/LcUSysHttp.h"

#include <windows.h>

#include <new>
#include <urlmon.h>
#include <wininet.h>

#include "MyBindStatusCallback.h"
#include "filestream/LcUURL.h"
#include "filestream/LcUURLParts.h"

namespace {
const DWORD kFlags = 0x84400000;        // reload, no cache write, keep connection
const DWORD kSecureFlags = 0x84C00000;  // and secure

const wchar_t* Wide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

// WinINet takes the send and receive times for a request only on the
// request itself, so the session keeps them for its requests.
struct Session {
  HINTERNET handle;
  DWORD connectMs, receiveMs;
};

struct Connection {
  HINTERNET handle;
  const Session* session;
};

uint32_t LastError() { return uint32_t(GetLastError()); }

// URL monikers want COM on the calling thread; a thread that has it keeps
// its own.
class ComScope {
public:
  ComScope() : started(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ~ComScope() {
    if (started) CoUninitialize();
  }

private:
  bool started;
};
}  // namespace

void* LcUSysHttp::OpenSession(const char16_t* userAgent, uint32_t& error) {
  HINTERNET handle = InternetOpenW(Wide(userAgent), INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
  Session* session = handle ? new (std::nothrow) Session{handle, 0, 0} : nullptr;
  if (!session) {
    error = LastError();
    if (handle) InternetCloseHandle(handle);
    return nullptr;
  }
  SetTimeouts(session, eDEFAULT_CONNECT_MS, eDEFAULT_RECEIVE_MS);
  return session;
}

void LcUSysHttp::CloseSession(void* session) {
  Session* s = static_cast<Session*>(session);
  InternetCloseHandle(s->handle);
  delete s;
}

void LcUSysHttp::SetTimeouts(void* session, uint32_t connectMs, uint32_t receiveMs) {
  Session* s = static_cast<Session*>(session);
  s->connectMs = connectMs;
  s->receiveMs = receiveMs;
  InternetSetOptionW(s->handle, INTERNET_OPTION_CONNECT_TIMEOUT, &s->connectMs, sizeof(DWORD));
  InternetSetOptionW(s->handle, INTERNET_OPTION_SEND_TIMEOUT, &s->receiveMs, sizeof(DWORD));
  InternetSetOptionW(s->handle, INTERNET_OPTION_RECEIVE_TIMEOUT, &s->receiveMs, sizeof(DWORD));
}

void* LcUSysHttp::Connect(void* session, const LcUURLParts& parts, uint32_t& error) {
  const Session* s = static_cast<const Session*>(session);
  int32_t port = parts.port ? parts.port : LcUURL::GetDefaultPort(parts.scheme.Get());
  HINTERNET handle = InternetConnectW(s->handle, Wide(parts.host.Get()), INTERNET_PORT(port), Wide(parts.user.Get()),
                                      Wide(parts.password.Get()), INTERNET_SERVICE_HTTP, 0, 0);
  Connection* connection = handle ? new (std::nothrow) Connection{handle, s} : nullptr;
  if (!connection) {
    error = LastError();
    if (handle) InternetCloseHandle(handle);
  }
  return connection;
}

void LcUSysHttp::CloseConnection(void* connection) {
  Connection* c = static_cast<Connection*>(connection);
  if (!c) return;
  InternetCloseHandle(c->handle);
  delete c;
}

void LcUSysHttp::SetCredentials(void* connection, bool proxy, const char16_t* user, const char16_t* password) {
  HINTERNET handle = static_cast<Connection*>(connection)->handle;
  InternetSetOptionW(handle, proxy ? INTERNET_OPTION_PROXY_USERNAME : INTERNET_OPTION_USERNAME,
                     const_cast<wchar_t*>(Wide(user)), DWORD(LcUString::Len(user)));
  InternetSetOptionW(handle, proxy ? INTERNET_OPTION_PROXY_PASSWORD : INTERNET_OPTION_PASSWORD,
                     const_cast<wchar_t*>(Wide(password)), DWORD(LcUString::Len(password)));
}

void* LcUSysHttp::OpenRequest(void* connection, const char16_t* verb, const char16_t* path, bool secure,
                              uint32_t& error) {
  const wchar_t* accept[] = {L"*/*", nullptr};
  Connection* c = static_cast<Connection*>(connection);
  HINTERNET request = HttpOpenRequestW(c->handle, Wide(verb), Wide(path), nullptr, nullptr, accept,
                                       secure ? kSecureFlags : kFlags, 0);
  if (!request) {
    error = LastError();
    return nullptr;
  }
  DWORD receive = c->session->receiveMs;
  InternetSetOptionW(request, INTERNET_OPTION_SEND_TIMEOUT, &receive, sizeof(receive));
  InternetSetOptionW(request, INTERNET_OPTION_RECEIVE_TIMEOUT, &receive, sizeof(receive));
  return request;
}

bool LcUSysHttp::SendRequest(void* request, const char16_t* headers, void*, uint32_t, uint32_t& error) {
  if (HttpSendRequestW(request, headers ? Wide(headers) : nullptr, headers ? DWORD(-1) : 0, nullptr, 0)) return true;
  error = LastError();
  return false;
}

bool LcUSysHttp::QueryRawHeaders(void* request, LcUString& out) {
  DWORD bytes = 0;
  out.Clear();
  HttpQueryInfoW(request, HTTP_QUERY_RAW_HEADERS_CRLF, nullptr, &bytes, nullptr);
  if (bytes == 0 || out.Reserve(int32_t(bytes / sizeof(wchar_t)) + 1) <= 0) return false;
  if (!HttpQueryInfoW(request, HTTP_QUERY_RAW_HEADERS_CRLF, out.GetBuffer(), &bytes, nullptr)) return false;
  out.SetLength(int32_t(bytes / sizeof(wchar_t)));
  return true;
}

bool LcUSysHttp::QueryStatus(void* request, uint32_t& status, uint32_t& error) {
  DWORD value = 0, size = sizeof(value);
  if (!HttpQueryInfoW(request, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &value, &size, nullptr)) {
    error = LastError();
    return false;
  }
  status = value;
  return true;
}

uint32_t LcUSysHttp::ReadBody(void* request, void* body, uint32_t size) {
  uint32_t count = 0;
  while (count < size) {
    DWORD read = 0;
    if (!InternetReadFile(request, static_cast<uint8_t*>(body) + count, size - count, &read) || read == 0) break;
    count += read;
  }
  return count;
}

void LcUSysHttp::CloseRequest(void* request) { InternetCloseHandle(request); }

bool LcUSysHttp::Download(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) {
  ComScope com;
  MyBindStatusCallback callback(sink);
  return SUCCEEDED(URLDownloadToFileW(nullptr, Wide(url), Wide(path), 0, &callback));
}

bool LcUSysHttp::DownloadToCache(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) {
  ComScope com;
  MyBindStatusCallback callback(sink);
  wchar_t buffer[MAX_PATH] = {};
  if (FAILED(URLDownloadToCacheFileW(nullptr, Wide(url), buffer, MAX_PATH, 0, &callback))) return false;
  path = reinterpret_cast<const char16_t*>(buffer);
  return true;
}
