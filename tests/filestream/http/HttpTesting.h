#pragma once
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "foundation/LcUSysError.h"
#include "http/TestHttpServer.h"

// The HTTP protocol started alone, against a test server of its own.
class HttpProtocolTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(LcUHttpFileProtocol::Initialize());
    http = static_cast<LcUHttpFileProtocol*>(LcUFileProtocolRegistry::GetInstance()->Find(u"http"));
    ASSERT_NE(nullptr, http);
    ASSERT_EQ("", server.Failure());
    logStart = LogText().size();
  }

  void TearDown() override {
    LcUSysError::SetTraceLevel(0);
    LcUHttpFileProtocol::Terminate();
  }

  static std::string LogText() {
    std::string text;
    LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                           &text);
    return text;
  }
  // What was logged since the test began.
  std::string NewLog() const { return LogText().substr(logStart); }

  // Proxy calls of one method.
  std::vector<TestHttpServer::ProxyCall> Calls(const std::string& method) const {
    std::vector<TestHttpServer::ProxyCall> calls;
    for (const auto& call : server.ProxyLog())
      if (call.method == method) calls.push_back(call);
    return calls;
  }

  static double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  TestHttpServer server;
  LcUHttpFileProtocol* http = nullptr;
  size_t logStart = 0;
};

// A handle, a worker's connection and a request token on one URL.
struct HttpReader {
  HttpReader(LcUHttpFileProtocol* http, const std::u16string& url) : http(http) {
    handle = http->OpenHandle(url.c_str(), false);
    thread = http->CreateThreadHandle(handle);
    request = http->CreateRequest(handle, 0, 0);
  }
  ~HttpReader() {
    http->DestroyRequest(request);
    http->DestroyThreadHandle(thread);
    http->CloseHandle(handle);
  }
  int32_t Range(int64_t offset, uint32_t size, std::vector<uint8_t>& out, int64_t* total = nullptr) {
    out.assign(size, 0);
    return http->ReadRange(handle, thread, request, offset, size, out.data(), total);
  }
  LcUHttpFileProtocol* http;
  void* handle;
  void* thread;
  void* request;
};
