#include "filestream/LcUSysHttp.h"

#include <curl/curl.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUDownloadProgressSink.h"
#include "filestream/LcUURLParts.h"
#include "foundation/LcUString.h"

namespace {
struct Session {
  std::string userAgent;
  std::atomic<uint32_t> connectMs{LcUSysHttp::eDEFAULT_CONNECT_MS};
  std::atomic<uint32_t> receiveMs{LcUSysHttp::eDEFAULT_RECEIVE_MS};
};

// One easy handle: its socket stays open from one request to the next.
struct Connection {
  Session* session;
  CURL* easy;
  std::string origin;
  std::string user, password;
  std::string proxyUser, proxyPassword;
};

struct Exchange {
  Connection* connection;
  std::string url;
  bool head;
  std::string raw;
  bool headersDone = false;
  uint8_t* body = nullptr;
  uint32_t size = 0;
  uint32_t received = 0;
};

std::string Utf8(const char16_t* text) {
  LcUStringA narrow;
  if (!text || !LcUString::UTF16ToUTF8(text, narrow, true)) return std::string();
  return std::string(narrow.Get() ? narrow.Get() : "", size_t(narrow.Length()));
}

uint32_t ErrorOf(CURLcode code) {
  switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
      return LcUSysHttp::eERROR_TIMEOUT;
    case CURLE_COULDNT_CONNECT:
      return LcUSysHttp::eERROR_CANNOT_CONNECT;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return LcUSysHttp::eERROR_NAME_NOT_RESOLVED;
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE:
      return LcUSysHttp::eERROR_CONNECTION_ABORTED;
    default:
      return LcUSysHttp::eERROR_OTHER;
  }
}

void Global() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

size_t OnHeader(char* data, size_t unit, size_t count, void* context) {
  Exchange* exchange = static_cast<Exchange*>(context);
  size_t n = unit * count;
  std::string line(data, n);
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  // Each answer on the way (an interim one, a redirect) starts afresh.
  if (line.compare(0, 5, "HTTP/") == 0) {
    exchange->raw.clear();
    exchange->headersDone = false;
  }
  if (line.empty()) {
    long status = 0;
    curl_easy_getinfo(exchange->connection->easy, CURLINFO_RESPONSE_CODE, &status);
    exchange->headersDone = status >= 200;
  }
  exchange->raw += line;
  exchange->raw += "\r\n";
  return n;
}

size_t OnBody(char* data, size_t unit, size_t count, void* context) {
  Exchange* exchange = static_cast<Exchange*>(context);
  long status = 0;
  curl_easy_getinfo(exchange->connection->easy, CURLINFO_RESPONSE_CODE, &status);
  // Nothing wanted, or an answer that isn't the data: stop it coming.
  if (!exchange->body || (status != 200 && status != 206)) return 0;
  size_t take = std::min<size_t>(unit * count, exchange->size - exchange->received);
  std::memcpy(exchange->body + exchange->received, data, take);
  exchange->received += uint32_t(take);
  return take;
}

void SetCommon(CURL* easy, const Session* session) {
  curl_easy_setopt(easy, CURLOPT_USERAGENT, session->userAgent.c_str());
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, long(session->connectMs.load()));
  // A server that sends nothing for the receive time has stalled.
  curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, std::max(1L, long(session->receiveMs.load() / 1000)));
  // The certificate authorities a user points OpenSSL at count here too.
  if (const char* authorities = std::getenv("SSL_CERT_FILE")) curl_easy_setopt(easy, CURLOPT_CAINFO, authorities);
}

struct DownloadTarget {
  FILE* file;
  LcUDownloadProgressSink* sink;
};

size_t OnFileData(char* data, size_t unit, size_t count, void* context) {
  return std::fwrite(data, unit, count, static_cast<DownloadTarget*>(context)->file) * unit;
}

int OnProgress(void* context, curl_off_t total, curl_off_t now, curl_off_t, curl_off_t) {
  DownloadTarget* target = static_cast<DownloadTarget*>(context);
  if (target->sink) target->sink->Progress(total > 0 ? double(now) / double(total) : 0.0);
  return 0;
}
}  // namespace

void* LcUSysHttp::OpenSession(const char16_t* userAgent, uint32_t& error) {
  Global();
  Session* session = new (std::nothrow) Session;
  if (!session) {
    error = eERROR_OTHER;
    return nullptr;
  }
  session->userAgent = Utf8(userAgent);
  return session;
}

void LcUSysHttp::CloseSession(void* session) { delete static_cast<Session*>(session); }

void LcUSysHttp::SetTimeouts(void* session, uint32_t connectMs, uint32_t receiveMs) {
  Session* s = static_cast<Session*>(session);
  s->connectMs = connectMs;
  s->receiveMs = receiveMs;
}

void* LcUSysHttp::Connect(void* session, const LcUURLParts& parts, uint32_t& error) {
  CURL* easy = curl_easy_init();
  Connection* connection = easy ? new (std::nothrow) Connection : nullptr;
  if (!connection) {
    if (easy) curl_easy_cleanup(easy);
    error = eERROR_OTHER;
    return nullptr;
  }
  connection->session = static_cast<Session*>(session);
  connection->easy = easy;
  connection->origin = Utf8(parts.scheme.Get()) + "://" + Utf8(parts.host.Get());
  if (parts.port) connection->origin += ":" + std::to_string(parts.port);
  connection->user = Utf8(parts.user.Get());
  connection->password = Utf8(parts.password.Get());
  return connection;
}

void LcUSysHttp::CloseConnection(void* connection) {
  Connection* c = static_cast<Connection*>(connection);
  if (!c) return;
  curl_easy_cleanup(c->easy);
  delete c;
}

void LcUSysHttp::SetCredentials(void* connection, bool proxy, const char16_t* user, const char16_t* password) {
  Connection* c = static_cast<Connection*>(connection);
  (proxy ? c->proxyUser : c->user) = Utf8(user);
  (proxy ? c->proxyPassword : c->password) = Utf8(password);
}

void* LcUSysHttp::OpenRequest(void* connection, const char16_t* verb, const char16_t* path, bool, uint32_t& error) {
  Exchange* exchange = new (std::nothrow) Exchange;
  if (!exchange) {
    error = eERROR_OTHER;
    return nullptr;
  }
  exchange->connection = static_cast<Connection*>(connection);
  exchange->url = exchange->connection->origin + Utf8(path);
  exchange->head = LcUString::Equal(verb, u"HEAD");
  return exchange;
}

bool LcUSysHttp::SendRequest(void* request, const char16_t* headers, void* body, uint32_t size, uint32_t& error) {
  Exchange* exchange = static_cast<Exchange*>(request);
  Connection* c = exchange->connection;
  CURL* easy = c->easy;
  // Resetting keeps the connection, which is the point of the handle.
  curl_easy_reset(easy);
  SetCommon(easy, c->session);
  curl_easy_setopt(easy, CURLOPT_URL, exchange->url.c_str());
  if (exchange->head) curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
  curl_slist* list = curl_slist_append(nullptr, "Accept: */*");
  std::string lines = Utf8(headers);
  for (size_t start = 0; start < lines.size();) {
    size_t end = lines.find_first_of("\r\n", start);
    if (end == std::string::npos) end = lines.size();
    if (end > start) list = curl_slist_append(list, lines.substr(start, end - start).c_str());
    start = end + 1;
  }
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, list);
  if (!c->user.empty()) {
    curl_easy_setopt(easy, CURLOPT_USERNAME, c->user.c_str());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, c->password.c_str());
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, long(CURLAUTH_ANY));
  }
  if (!c->proxyUser.empty()) {
    curl_easy_setopt(easy, CURLOPT_PROXYUSERNAME, c->proxyUser.c_str());
    curl_easy_setopt(easy, CURLOPT_PROXYPASSWORD, c->proxyPassword.c_str());
  }
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &OnHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, exchange);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &OnBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, exchange);
  exchange->raw.clear();
  exchange->headersDone = false;
  exchange->body = static_cast<uint8_t*>(body);
  exchange->size = body ? size : 0;
  exchange->received = 0;
  CURLcode code = curl_easy_perform(easy);
  curl_slist_free_all(list);
  // Once the headers are in, the request was sent and answered; a body
  // cut short shows as a short count, as it would when read.
  if (exchange->headersDone) return true;
  error = ErrorOf(code);
  return false;
}

bool LcUSysHttp::QueryRawHeaders(void* request, LcUString& out) {
  const std::string& raw = static_cast<Exchange*>(request)->raw;
  out.Clear();
  out.Reserve(int32_t(raw.size()));
  for (char c : raw) out.Append(char16_t(uint8_t(c)));
  return !raw.empty();
}

bool LcUSysHttp::QueryStatus(void* request, uint32_t& status, uint32_t& error) {
  Exchange* exchange = static_cast<Exchange*>(request);
  long code = 0;
  if (!exchange->headersDone || curl_easy_getinfo(exchange->connection->easy, CURLINFO_RESPONSE_CODE, &code) != CURLE_OK ||
      code <= 0) {
    error = 12150;  // the header is not there
    return false;
  }
  status = uint32_t(code);
  return true;
}

uint32_t LcUSysHttp::ReadBody(void* request, void*, uint32_t) { return static_cast<Exchange*>(request)->received; }

void LcUSysHttp::CloseRequest(void* request) { delete static_cast<Exchange*>(request); }

bool LcUSysHttp::Download(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink) {
  Global();
  CURL* easy = curl_easy_init();
  if (!easy) return false;
  LcUSysFileHandle output;
  if (!output.Open(path, LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                   LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_WRITE, LcUSysFileHandle::eHINT_SEQUENTIAL,
                   LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE)) {
    curl_easy_cleanup(easy);
    return false;
  }
  Session session;
  session.userAgent = "Hollimar-Tarnwicket";
  SetCommon(easy, &session);
  DownloadTarget target{output.GetStream(), sink};
  curl_easy_setopt(easy, CURLOPT_URL, Utf8(url).c_str());
  curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &OnFileData);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, &target);
  curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &OnProgress);
  curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &target);
  if (sink) sink->Progress(0.0);
  CURLcode code = curl_easy_perform(easy);
  curl_easy_cleanup(easy);
  bool written = output.Close();
  if (sink) sink->Progress(1.0);
  if (code == CURLE_OK && written) return true;
  LcUSysFile::Delete(path, true);
  return false;
}

bool LcUSysHttp::DownloadToCache(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path) {
  LcUString leaf, extension;
  LcUSysFile::Split(url, nullptr, &leaf, &extension);
  if (!LcUSysFile::MakeTempName(nullptr, u"twdl", extension.Get(), path)) return false;
  return Download(url, path.Get(), sink);
}
