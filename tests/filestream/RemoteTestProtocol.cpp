#include "RemoteTestProtocol.h"

#include <chrono>
#include <cstdio>

#include <sys/stat.h>

#include "filestream/LcUFileMetaData.h"

namespace {
const std::u16string kPrefix = u"rtest://host/";
// No test holds a read longer than this; a forgotten release fails, not hangs.
const auto kHoldLimit = std::chrono::seconds(20);
}  // namespace

std::string RemoteTestProtocol::PathOf(const char16_t* url) const {
  std::u16string text(url);
  if (text.compare(0, kPrefix.size(), kPrefix) != 0) return std::string();
  std::u16string wide = folder + u"/" + text.substr(kPrefix.size());
  std::string narrow;  // test paths are ASCII, and "/" serves both platforms
  for (char16_t c : wide) narrow += c == u'\\' ? '/' : char(c);
  return narrow;
}

void RemoteTestProtocol::FailReads(int64_t offset, int32_t count) {
  std::lock_guard<std::mutex> guard(lock);
  failures[offset] = count;
}

void RemoteTestProtocol::ShortenReads(bool on) {
  std::lock_guard<std::mutex> guard(lock);
  shortReads = on;
}

void RemoteTestProtocol::Hold(bool on) {
  std::lock_guard<std::mutex> guard(lock);
  held = on;
  released.notify_all();
}

void RemoteTestProtocol::SetLatency(std::chrono::milliseconds value) {
  std::lock_guard<std::mutex> guard(lock);
  latency = value;
}

void RemoteTestProtocol::WaitWhileHeld(std::unique_lock<std::mutex>& guard) {
  released.wait_for(guard, kHoldLimit, [this] { return !held; });
}

void RemoteTestProtocol::Delay(std::unique_lock<std::mutex>& guard) {
  auto end = std::chrono::steady_clock::now() + latency;
  while (std::chrono::steady_clock::now() < end) released.wait_until(guard, end);
}

std::vector<RemoteTestProtocol::Call> RemoteTestProtocol::Reads() {
  std::lock_guard<std::mutex> guard(lock);
  return reads;
}

int32_t RemoteTestProtocol::CountReads(int64_t offset) {
  std::lock_guard<std::mutex> guard(lock);
  int32_t count = 0;
  for (const Call& call : reads) count += call.offset == offset;
  return count;
}

int32_t RemoteTestProtocol::OpenThreadHandles() {
  std::lock_guard<std::mutex> guard(lock);
  return threadHandles;
}

int32_t RemoteTestProtocol::OpenRequests() {
  std::lock_guard<std::mutex> guard(lock);
  return requests;
}

bool RemoteTestProtocol::GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) {
  std::unique_lock<std::mutex> guard(lock);
  WaitWhileHeld(guard);
  Delay(guard);
  FILE* file = std::fopen(PathOf(url).c_str(), "rb");
  if (!file) return false;
  std::fseek(file, 0, SEEK_END);
  metadata.SetFileSize(uint64_t(std::ftell(file)));
  std::fclose(file);
  struct stat info;
  if (times && stat(PathOf(url).c_str(), &info) == 0) metadata.SetModificationTime(int64_t(info.st_mtime));
  if (!revision.empty()) metadata.SetRevisionId(revision.c_str());
  return true;
}

void RemoteTestProtocol::SetTimes(bool on) {
  std::lock_guard<std::mutex> guard(lock);
  times = on;
}

void RemoteTestProtocol::SetRevision(const std::u16string& id) {
  std::lock_guard<std::mutex> guard(lock);
  revision = id;
}

void RemoteTestProtocol::SetCanDownload(bool on) {
  std::lock_guard<std::mutex> guard(lock);
  canDownload = on;
}

void RemoteTestProtocol::FailDownloads(bool on) {
  std::lock_guard<std::mutex> guard(lock);
  failDownloads = on;
}

bool RemoteTestProtocol::CanDownload() {
  std::lock_guard<std::mutex> guard(lock);
  return canDownload;
}

int32_t RemoteTestProtocol::Downloads() {
  std::lock_guard<std::mutex> guard(lock);
  return downloads;
}

bool RemoteTestProtocol::DownloadFile(const char16_t* url, const char16_t* path, LcUDownloadProgressSink*) {
  std::lock_guard<std::mutex> guard(lock);
  ++downloads;
  if (failDownloads) return false;
  FILE* from = std::fopen(PathOf(url).c_str(), "rb");
  std::string target;
  for (const char16_t* c = path; *c; ++c) target += *c == u'\\' ? '/' : char(*c);
  FILE* to = from ? std::fopen(target.c_str(), "wb") : nullptr;
  bool copied = to != nullptr;
  for (int c; copied && (c = std::fgetc(from)) != EOF;) copied = std::fputc(c, to) != EOF;
  if (to) copied = std::fclose(to) == 0 && copied;
  if (from) std::fclose(from);
  return copied;
}

void* RemoteTestProtocol::OpenHandle(const char16_t* url, bool) {
  std::lock_guard<std::mutex> guard(lock);
  ++handles;
  ++handlesOpened;
  return new std::string(PathOf(url));
}

bool RemoteTestProtocol::CloseHandle(void* handle) {
  std::lock_guard<std::mutex> guard(lock);
  --handles;
  delete static_cast<std::string*>(handle);
  return true;
}

int32_t RemoteTestProtocol::OpenHandles() {
  std::lock_guard<std::mutex> guard(lock);
  return handles;
}

int32_t RemoteTestProtocol::HandlesOpened() {
  std::lock_guard<std::mutex> guard(lock);
  return handlesOpened;
}

bool RemoteTestProtocol::ReadFile(void* handle, void*, void*, int64_t offset, uint32_t size, void* buffer) {
  std::unique_lock<std::mutex> guard(lock);
  reads.push_back({offset, size, *static_cast<std::string*>(handle)});
  WaitWhileHeld(guard);
  Delay(guard);
  auto failure = failures.find(offset);
  if (failure != failures.end() && failure->second != 0) {
    if (failure->second > 0) --failure->second;
    return false;
  }
  bool shorten = shortReads;
  if (shorten) size /= 2;
  guard.unlock();
  FILE* file = std::fopen(static_cast<std::string*>(handle)->c_str(), "rb");
  if (!file) return false;
  bool read = std::fseek(file, long(offset), SEEK_SET) == 0 && std::fread(buffer, 1, size, file) == size;
  std::fclose(file);
  return read && !shorten;
}

void* RemoteTestProtocol::CreateThreadHandle(void* handle) {
  std::lock_guard<std::mutex> guard(lock);
  ++threadHandles;
  return handle;
}

bool RemoteTestProtocol::DestroyThreadHandle(void*) {
  std::lock_guard<std::mutex> guard(lock);
  --threadHandles;
  return true;
}

void* RemoteTestProtocol::CreateRequest(void* handle, int64_t, uint32_t) {
  std::lock_guard<std::mutex> guard(lock);
  ++requests;
  return handle;
}

bool RemoteTestProtocol::DestroyRequest(void*) {
  std::lock_guard<std::mutex> guard(lock);
  --requests;
  return true;
}
