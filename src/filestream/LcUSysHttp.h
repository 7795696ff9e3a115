#pragma once
#include <cstdint>
#include "foundation/LcUString.h"

class LcUDownloadProgressSink;
struct LcUURLParts;

// The platform's HTTP client, in the shape of the one the protocol was
// written against: a session, connections to one server each, and
// requests on a connection. Windows has WinINet and URL monikers; Linux
// libcurl, where a connection is one easy handle that keeps its socket
// alive between requests. Errors are WinINet's numbers on both, so that
// the protocol's retries and logs read the same.
class LcUSysHttp {
public:
  enum : uint32_t {
    eERROR_TIMEOUT = 12002,
    eERROR_CANNOT_CONNECT = 12029,
    eERROR_CONNECTION_ABORTED = 12030,
    eERROR_NAME_NOT_RESOLVED = 12007,
    eERROR_OTHER = 12004,
    eRAW_HEADERS_BYTES = 8190,
  };
  enum : uint32_t { eDEFAULT_CONNECT_MS = 30000, eDEFAULT_RECEIVE_MS = 30000 };

  static void* OpenSession(const char16_t* userAgent, uint32_t& error);
  static void CloseSession(void* session);
  // A connection that waits longer than connectMs for the server, or a
  // request that hears nothing for receiveMs, fails with eERROR_TIMEOUT.
  static void SetTimeouts(void* session, uint32_t connectMs, uint32_t receiveMs);

  static void* Connect(void* session, const LcUURLParts& parts, uint32_t& error);
  static void CloseConnection(void* connection);
  static void SetCredentials(void* connection, bool proxy, const char16_t* user, const char16_t* password);

  static void* OpenRequest(void* connection, const char16_t* verb, const char16_t* path, bool secure,
                           uint32_t& error);
  // headers: CRLF-separated lines, or null. Up to size bytes of the body
  // may land in body as the answer comes; ReadBody gives them.
  static bool SendRequest(void* request, const char16_t* headers, void* body, uint32_t size, uint32_t& error);
  // The status line and headers, CRLF-separated, at most eRAW_HEADERS_BYTES.
  static bool QueryRawHeaders(void* request, LcUString& out);
  static bool QueryStatus(void* request, uint32_t& status, uint32_t& error);
  // Into the body given to SendRequest, until size bytes, a failure or the
  // end; the count.
  static uint32_t ReadBody(void* request, void* body, uint32_t size);
  static void CloseRequest(void* request);

  static bool Download(const char16_t* url, const char16_t* path, LcUDownloadProgressSink* sink);
  // Into the platform's download cache; path names the file.
  static bool DownloadToCache(const char16_t* url, LcUDownloadProgressSink* sink, LcUString& path);
};
