#include <atomic>
#include <cstring>
#include <string>

#include "environment/LcUSysFile.h"
#include "filestream/LcUDownloadProgressSink.h"
#include "filestream/LcUFileMetaData.h"
#include "http/HttpTesting.h"

namespace {
class HttpProtocol : public HttpProtocolTest {};

std::atomic<int> credentialCalls{0};
int32_t CountingCredentials(const char16_t* url, LcUString& user, LcUString& password) {
  ++credentialCalls;
  return LcUHttpFileProtocol::DefaultCredentials(url, user, password);
}

std::u16string WithCredentials(std::u16string url) { return url.insert(7, u"tw:secret@"); }

}  // namespace

TEST_F(HttpProtocol, HeadGivesSizeRevisionAndTimeAndTheUserAgent) {
  server.Serve("model.bin", TestHttpServer::Pattern(5000));
  LcUFileMetaData info;
  ASSERT_TRUE(http->GetFileInfo(server.Url("model.bin").c_str(), info));
  EXPECT_EQ(5000u, info.GetFileSize());
  EXPECT_TRUE(info.Has(LcUFileMetaData::eREVISION_ID));
  EXPECT_EQ(u'"', info.GetRevisionId()[0]) << "the entity tag as the server wrote it";
  ASSERT_TRUE(info.Has(LcUFileMetaData::eMODIFICATION_TIME));
  EXPECT_GT(info.GetModificationTime(), 1700000000);
  auto log = server.AccessLog(1);
  ASSERT_EQ(1u, log.size());
  EXPECT_EQ("HEAD", log[0].method);
  EXPECT_EQ("", log[0].range) << "HEAD goes bare";
  EXPECT_EQ("Hollimar-Tarnwicket", log[0].agent);
}

TEST_F(HttpProtocol, ASecondAskWithinTheLifetimeSendsNothingAnotherURLReplacesTheEntry) {
  server.Serve("a.bin", TestHttpServer::Pattern(10));
  server.Serve("b.bin", TestHttpServer::Pattern(20));
  LcUFileMetaData info;
  ASSERT_TRUE(http->GetFileInfo(server.Url("a.bin", TestHttpServer::ePROXY).c_str(), info));
  ASSERT_TRUE(http->GetFileInfo(server.Url("a.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(10u, info.GetFileSize());
  EXPECT_EQ(1u, server.ProxyLog().size());
  ASSERT_TRUE(http->GetFileInfo(server.Url("b.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(20u, info.GetFileSize());
  ASSERT_TRUE(http->GetFileInfo(server.Url("a.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(10u, info.GetFileSize());
  EXPECT_EQ(3u, server.ProxyLog().size()) << "one entry only: b's answer pushed a's out";
}

TEST_F(HttpProtocol, AHeadRefusedWith405IsAskedAgainWithATwoByteGet) {
  server.Serve("m.bin", TestHttpServer::Pattern(5000));
  server.SetRules(R"([{"method": "HEAD", "status": 405, "empty_body": true}])");
  LcUFileMetaData info;
  ASSERT_TRUE(http->GetFileInfo(server.Url("m.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(5000u, info.GetFileSize()) << "from Content-Range: bytes 0-1/5000";
  auto calls = server.ProxyLog();
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ("HEAD", calls[0].method);
  EXPECT_EQ("GET", calls[1].method);
  EXPECT_EQ("bytes=0-1", calls[1].range);
}

TEST_F(HttpProtocol, AnswersWithoutSomeValuesCountWhileOneIsLeft) {
  server.Serve("m.bin", TestHttpServer::Pattern(5000));
  struct Case {
    const char* rules;
    bool ok;
    uint32_t mask;
  };
  const uint32_t all =
      LcUFileMetaData::eFILE_SIZE | LcUFileMetaData::eREVISION_ID | LcUFileMetaData::eMODIFICATION_TIME;
  for (const Case& c : {
           Case{R"([{"drop_headers": ["Content-Length"]}])", true, all & ~uint32_t(LcUFileMetaData::eFILE_SIZE)},
           Case{R"([{"drop_headers": ["ETag", "Last-Modified"]}])", true, LcUFileMetaData::eFILE_SIZE},
           Case{R"([{"lower_headers": true}])", true, all},
           Case{R"([{"drop_headers": ["Content-Length", "ETag", "Last-Modified"]}])", false, 0},
           // A 206 whose range isn't the two bytes asked gives no size.
           Case{R"([{"method": "HEAD", "status": 405, "empty_body": true},
                    {"method": "GET", "drop_headers": ["Content-Range"]}])",
                true, all & ~uint32_t(LcUFileMetaData::eFILE_SIZE)},
       }) {
    server.SetRules(c.rules);
    // A fresh URL each time: the last answer is remembered.
    static int serial = 0;
    std::u16string url = server.Url("m.bin?" + std::to_string(++serial), TestHttpServer::ePROXY);
    LcUFileMetaData info;
    EXPECT_EQ(c.ok, http->GetFileInfo(url.c_str(), info)) << c.rules;
    if (c.ok) {
      EXPECT_EQ(c.mask, info.GetMask()) << c.rules;
    }
  }
}

TEST_F(HttpProtocol, BadGatewayIsAskedThreeMoreTimes) {
  server.Serve("m.bin", TestHttpServer::Pattern(100));
  server.SetRules(R"([{"status": 502, "empty_body": true, "times": 4}])");
  LcUFileMetaData info;
  EXPECT_FALSE(http->GetFileInfo(server.Url("m.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(4u, server.ProxyLog().size());
  // The fifth would have passed: the same count of requests, then success.
  server.SetRules(R"([{"status": 502, "empty_body": true, "times": 3}])");
  ASSERT_TRUE(http->GetFileInfo(server.Url("m.bin?2", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(100u, info.GetFileSize());
  EXPECT_EQ(8u, server.ProxyLog().size());
}

TEST_F(HttpProtocol, AuthenticationAsksTheCallbackAndFailsTheCall) {
  server.Serve("private/m.bin", TestHttpServer::Pattern(100));
  LcUHttpFileProtocol::SetCredentialCallback(&CountingCredentials);
  credentialCalls = 0;
  LcUFileMetaData info;
  EXPECT_FALSE(http->GetFileInfo(server.Url("private/m.bin").c_str(), info));
  EXPECT_EQ(1, credentialCalls.load());
  auto log = server.AccessLog(1);
  ASSERT_EQ(1u, log.size()) << "the request is not sent again";
  EXPECT_EQ(401, log[0].status);
  // A proxy asking for credentials: the same, on the proxy's pair.
  server.SetRules(R"([{"status": 407, "empty_body": true}])");
  EXPECT_FALSE(http->GetFileInfo(server.Url("m.bin", TestHttpServer::ePROXY).c_str(), info));
  EXPECT_EQ(2, credentialCalls.load());
  // Credentials in the URL go with the connection, and the server takes them.
  EXPECT_TRUE(http->GetFileInfo(WithCredentials(server.Url("private/m.bin")).c_str(), info));
  EXPECT_EQ(100u, info.GetFileSize());
  LcUHttpFileProtocol::SetCredentialCallback(&LcUHttpFileProtocol::DefaultCredentials);
}

TEST_F(HttpProtocol, UnhandledStatusesFailAndTraceAtLevelFive) {
  LcUSysError::SetTraceLevel(5);
  LcUFileMetaData info;
  EXPECT_FALSE(http->GetFileInfo(server.Url("missing.bin").c_str(), info));
  EXPECT_TRUE(Logged("LcUHttpFileProtocol::GetFileInfo HttpQueryInfo Unhandled Status Code for " +
                     Narrow(server.Url("missing.bin")) + ": 404"));
}

TEST_F(HttpProtocol, RangesAreExactAndInclusive) {
  std::vector<uint8_t> data = TestHttpServer::Pattern(100000);
  server.Serve("m.bin", data);
  HttpReader reader(http, server.Url("m.bin"));
  std::vector<uint8_t> out;
  ASSERT_EQ(10, reader.Range(99990, 10, out));
  EXPECT_EQ(0, std::memcmp(out.data(), data.data() + 99990, 10));
  int64_t total = 0;
  ASSERT_EQ(4096, reader.Range(4096, 4096, out, &total));
  EXPECT_EQ(100000, total);
  EXPECT_EQ(0, std::memcmp(out.data(), data.data() + 4096, 4096));
  EXPECT_EQ(0, reader.Range(5, 0, out));
  EXPECT_EQ(-1, reader.Range(5, 0, out, &total)) << "size 0 with a total asked";
  auto log = server.AccessLog(2);
  ASSERT_EQ(2u, log.size());
  EXPECT_EQ("bytes=99990-99999", log[0].range);
  EXPECT_EQ("bytes=4096-8191", log[1].range);
  EXPECT_EQ(log[0].connection, log[1].connection) << "the worker's connection stays open";
}

TEST_F(HttpProtocol, ReadFailuresGiveTheirResultAndLogLine) {
  server.Serve("m.bin", TestHttpServer::Pattern(100000));
  struct Case {
    const char* rules;
    bool total;
    int32_t result;
    const char* log;
    // A reset may drop what was sent before it.
    bool atMost = false;
  };
  for (const Case& c : {
           Case{R"([{"truncate": 100}])", false, 100, "InternetReadFile partial data for"},
           Case{R"([{"reset_after": 1000}])", false, 1000, nullptr, true},
           Case{R"([{"drop_headers": ["Content-Length"], "truncate": 0}])", false, -1,
                "HttpQueryInfo Can't find size in headers for"},
           Case{R"([{"drop_headers": ["Content-Range"]}])", true, -1, "Can't find size in headers for"},
           Case{R"([{"status": 500}])", false, -1, "ReadFile HttpQueryInfo Unhandled Status Code for"},
           Case{R"([{"lower_headers": true}])", true, 4096, nullptr},
       }) {
    server.SetRules(c.rules);
    static int serial = 0;
    std::u16string url = server.Url("m.bin?" + std::to_string(++serial), TestHttpServer::ePROXY);
    HttpReader reader(http, url);
    std::vector<uint8_t> out;
    int64_t total = 0;
    int32_t result = reader.Range(4096, 4096, out, c.total ? &total : nullptr);
    if (c.atMost) {
      EXPECT_LE(result, c.result) << c.rules;
    } else {
      EXPECT_EQ(c.result, result) << c.rules;
    }
    if (result == 4096) {
      EXPECT_TRUE(http->ReadFile(reader.handle, reader.thread, reader.request, 0, 0, nullptr)) << "all of nothing";
    } else if (result >= 0) {
      EXPECT_FALSE(http->ReadFile(reader.handle, reader.thread, reader.request, 4096, 4096, out.data()));
    }
    if (c.log) {
      EXPECT_TRUE(Logged(std::string(c.log) + " " + Narrow(url))) << c.rules;
    }
  }
}

// Calls that cannot reach the server fail at once and say so; a call that
// connects says nothing about connecting.
TEST_F(HttpProtocol, UnusableHandlesAndURLsFailWithoutAsking) {
  server.Serve("m.bin", TestHttpServer::Pattern(10000));
  std::u16string url = server.Url("m.bin?unusable");
  HttpReader reader(http, url);
  std::vector<uint8_t> out(100);
  EXPECT_EQ(0, http->ReadRange(reader.handle, nullptr, reader.request, 0, 100, out.data(), nullptr));
  EXPECT_TRUE(Logged("ReadFile HttpOpenRequest for " + Narrow(url) + " failed: 6"));
  LcUFileMetaData info;
  for (const char16_t* bad : {u"http://", u"http://[::1/m.bin", u"no scheme at all"})
    EXPECT_FALSE(http->GetFileInfo(bad, info)) << Narrow(bad);
  ASSERT_TRUE(http->GetFileInfo(url.c_str(), info));
  EXPECT_FALSE(Logged("InternetConnect for " + Narrow(url)));
  EXPECT_EQ(1u, server.AccessLog(1).size()) << "only the good URL reached the server";
}

TEST_F(HttpProtocol, AServerThatIgnoresTheRangeGivesTheStartOfTheFile) {
  std::vector<uint8_t> data = TestHttpServer::Pattern(300000);
  server.Serve("m.bin", data);
  server.SetRules(R"([{"ignore_range": true}])");
  HttpReader reader(http, server.Url("m.bin", TestHttpServer::ePROXY));
  std::vector<uint8_t> out(4096);
  EXPECT_TRUE(http->ReadFile(reader.handle, reader.thread, reader.request, 8192, 4096, out.data()));
  EXPECT_EQ(0, std::memcmp(out.data(), data.data(), 4096)) << "taken as the range, as the program always has";
  int64_t total = 0;
  EXPECT_EQ(-1, reader.Range(8192, 4096, out, &total)) << "no Content-Range, no total";
}

TEST_F(HttpProtocol, AStalledServerFailsWithinTheTimeouts) {
  server.Serve("m.bin", TestHttpServer::Pattern(100000));
  http->SetTimeouts(2000, 1000);
  // Headers then silence: the read comes up short.
  server.SetRules(R"([{"method": "GET", "stall_after": 10, "stall_seconds": 60}])");
  auto start = std::chrono::steady_clock::now();
  {
    HttpReader reader(http, server.Url("m.bin", TestHttpServer::ePROXY));
    std::vector<uint8_t> out;
    int32_t count = reader.Range(0, 4096, out);
    EXPECT_GE(count, 0);
    EXPECT_LE(count, 10);
  }
  EXPECT_LT(SecondsSince(start), 20.0);
  // Silence before the headers: three attempts, then -1.
  server.SetRules(R"([{"method": "GET", "latency_ms": 60000}])");
  start = std::chrono::steady_clock::now();
  {
    HttpReader reader(http, server.Url("m.bin", TestHttpServer::ePROXY));
    std::vector<uint8_t> out;
    EXPECT_EQ(-1, reader.Range(0, 4096, out));
  }
  EXPECT_LT(SecondsSince(start), 30.0);
  // Three attempts when the client calls it a time-out; Wine's WinINet
  // calls it an aborted connection, which is not tried again.
  bool timedOut = !Logged("ReadFile HttpSendRequest for " + Narrow(server.Url("m.bin", TestHttpServer::ePROXY)));
  EXPECT_EQ(timedOut ? 3u : 1u, Calls("GET").size() - 1);
}

TEST_F(HttpProtocol, ABlankAndItsEncodingReachTheServerAsOneRequestLine) {
  server.Serve("a b.bin", TestHttpServer::Pattern(64));
  std::u16string base = server.Url("");
  LcUFileMetaData info;
  ASSERT_TRUE(http->GetFileInfo((base + u"a b.bin").c_str(), info));
  ASSERT_TRUE(http->GetFileInfo((base + u"a%20b.bin").c_str(), info));
  for (const std::u16string& name : {std::u16string(u"a b.bin"), std::u16string(u"a%20b.bin")}) {
    HttpReader reader(http, base + name);
    std::vector<uint8_t> out;
    EXPECT_EQ(64, reader.Range(0, 64, out));
  }
  auto log = server.AccessLog(4);
  ASSERT_EQ(4u, log.size());
  for (const auto& entry : log) EXPECT_EQ("/a%20b.bin", entry.target);
}

TEST_F(HttpProtocol, HttpsAgainstTheTestAuthority) {
  TestHttpServer secure(true);
  ASSERT_EQ("", secure.Failure());
  secure.Serve("m.bin", TestHttpServer::Pattern(70000));
  LcUFileMetaData info;
#ifdef _WIN32
  // The system's store doesn't know the test authority: a clean failure.
  EXPECT_FALSE(http->GetFileInfo(secure.Url("m.bin", TestHttpServer::eHTTPS).c_str(), info));
  EXPECT_TRUE(Logged("GetFileInfo HttpSendRequest for " + Narrow(secure.Url("m.bin", TestHttpServer::eHTTPS))));
#else
  EXPECT_FALSE(http->GetFileInfo(secure.Url("m.bin", TestHttpServer::eHTTPS).c_str(), info))
      << "an unknown authority is refused";
  setenv("SSL_CERT_FILE", secure.AuthorityFile().c_str(), 1);
  ASSERT_TRUE(http->GetFileInfo(secure.Url("m.bin?again", TestHttpServer::eHTTPS).c_str(), info));
  EXPECT_EQ(70000u, info.GetFileSize());
  HttpReader reader(http, secure.Url("m.bin", TestHttpServer::eHTTPS));
  std::vector<uint8_t> out;
  EXPECT_EQ(65536, reader.Range(1, 65536, out));
  unsetenv("SSL_CERT_FILE");
#endif
}

namespace {
struct ProgressRecord : LcUDownloadProgressSink {
  void Progress(double fraction) override { seen.push_back(fraction); }
  std::vector<double> seen;
};
}  // namespace

TEST_F(HttpProtocol, WholeFileDownloadsReportProgressFromZeroToOne) {
  std::vector<uint8_t> data = TestHttpServer::Pattern(3 << 20);
  server.Serve("whole.bin", data);
  LcUString target;
  ASSERT_TRUE(LcUSysFile::MakeTempName(nullptr, u"twhttp", u"bin", target));
  ProgressRecord progress;
  ASSERT_TRUE(http->DownloadFile(server.Url("whole.bin").c_str(), target.Get(), &progress));
  ASSERT_GE(progress.seen.size(), 2u);
  EXPECT_EQ(0.0, progress.seen.front());
  EXPECT_EQ(1.0, progress.seen.back());
  for (size_t i = 1; i < progress.seen.size(); ++i) EXPECT_LE(progress.seen[i - 1], progress.seen[i] + 1e-12);
  int64_t size = 0;
  ASSERT_TRUE(LcUSysFile::GetSize(target.Get(), size)) << std::string(target.Get(), target.Get() + target.Length());
  EXPECT_EQ(int64_t(data.size()), size);
  LcUSysFile::Delete(target.Get(), true);
  LcUString cached;
  ASSERT_TRUE(http->DownloadToCacheFile(server.Url("whole.bin").c_str(), nullptr, cached));
  ASSERT_TRUE(LcUSysFile::GetSize(cached.Get(), size));
  EXPECT_EQ(int64_t(data.size()), size);
#ifndef _WIN32
  // URL monikers keep the server's error page; libcurl is told to fail.
  EXPECT_FALSE(http->DownloadFile(server.Url("missing.bin").c_str(), target.Get(), nullptr));
#endif
}
