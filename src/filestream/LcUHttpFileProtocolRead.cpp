#include "filestream/LcUHttpFileProtocol.h"
#include "filestream/LcUHttpFileHandles.h"
#include "filestream/LcUHttpHeaders.h"
#include "filestream/LcUSysHttp.h"
#include "foundation/LcUError.h"

namespace {
// The caller's extra lines, each trimmed, blank ones dropped.
void AppendExtraLines(const LcUString& extra, LcUString& headers) {
  for (int32_t start = 0; start < extra.Length();) {
    int32_t end = extra.FindChar(u'\n', start);
    if (end < 0) end = extra.Length();
    LcUString line;
    LcUString::Substring(extra, start, end, line);
    line.Trim();
    if (!line.IsEmpty()) {
      headers.Append(u"\r\n");
      headers.Append(line);
    }
    start = end + 1;
  }
}

// The size the headers give, then the status, then the body.
int32_t ReadRangeAnswer(void* exchange, const char16_t* url, void* buffer, uint32_t size, int64_t* totalSize) {
  LcUString raw;
  LcUSysHttp::QueryRawHeaders(exchange, raw);
  uint64_t found = 0;
  if (!(totalSize ? LcUHttpHeaders::GetContentRangeTotal(raw.Get(), found)
                  : LcUHttpHeaders::GetContentLength(raw.Get(), found))) {
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpQueryInfo Can't find size in headers for %s: %s\n", url,
                   raw.Get());
    return -1;
  }
  uint32_t status = 0, error = 0;
  if (!LcUSysHttp::QueryStatus(exchange, status, error)) {
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpQueryInfo Status Code for %s failed: %d. Full headers follow\n",
                   url, int(error));
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpQueryInfo Status Code Full Headers: %s\n", raw.Get());
    return -1;
  }
  if (status != 200 && status != 206) {
    LcUString text;
    text.Format(u"%u", status);
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpQueryInfo Unhandled Status Code for %s: %s\n", url,
                   text.Get());
    return -1;
  }
  if (totalSize) *totalSize = int64_t(found);
  return int32_t(LcUSysHttp::ReadBody(exchange, buffer, size));
}
}  // namespace

int32_t LcUHttpFileProtocol::ReadRange(void* handle, void* threadHandle, void* request, int64_t offset,
                                       uint32_t size, void* buffer, int64_t* totalSize) {
  if (size == 0) return totalSize ? -1 : 0;
  Request* token = static_cast<Request*>(request);
  ThreadHandle* thread = static_cast<ThreadHandle*>(threadHandle);
  const char16_t* url = token ? token->url.Get() : static_cast<Handle*>(handle)->text.Get();
  LcUString headers;
  headers.Format(u"Range: bytes=%lld-%lld", static_cast<long long>(offset),
                 static_cast<long long>(offset + int64_t(size) - 1));
  if (token) AppendExtraLines(token->extraHeaders, headers);
  uint32_t error = 6;  // an invalid handle, as the platform names it
  void* exchange = thread && token ? LcUSysHttp::OpenRequest(thread->connection, u"GET", token->path.Get(),
                                                             thread->secure != 0, error)
                                   : nullptr;
  if (!exchange) {
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpOpenRequest for %s failed: %d\n", url, int(error));
    return 0;
  }
  bool sent = false;
  for (uint32_t attempt = 0; !sent && attempt < eATTEMPTS; ++attempt) {
    sent = LcUSysHttp::SendRequest(exchange, headers.Get(), buffer, size, error);
    if (!sent && error != LcUSysHttp::eERROR_TIMEOUT) break;
  }
  int32_t result = -1;
  if (sent) {
    result = ReadRangeAnswer(exchange, url, buffer, size, totalSize);
  } else if (error != LcUSysHttp::eERROR_TIMEOUT) {
    LcUError::LogF(u"LcUHttpFileProtocol::ReadFile HttpSendRequest for %s failed: %d\n", url, int(error));
  }
  LcUSysHttp::CloseRequest(exchange);
  return result;
}

bool LcUHttpFileProtocol::ReadFile(void* handle, void* threadHandle, void* request, int64_t offset, uint32_t size,
                                   void* buffer) {
  int32_t count = ReadRange(handle, threadHandle, request, offset, size, buffer, nullptr);
  if (count < 0) return false;
  if (uint32_t(count) == size) return true;
  Request* token = static_cast<Request*>(request);
  LcUError::LogF(u"LcUHttpFileProtocol::ReadFile InternetReadFile partial data for %s: %d\n",
                 token ? token->url.Get() : static_cast<Handle*>(handle)->text.Get(), count);
  return false;
}
