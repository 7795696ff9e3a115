#include <cstring>
#include <map>
#include <random>
#include <set>

#include "FileURLTesting.h"
#include "filestream/LcUHttpFileProtocol.h"
#include "http/TestHttpServer.h"
#include "serial/LcUSysCryptHash.h"
#include "serial/LcUSysCryptHashSHA256.h"

namespace {
class FileURLHttp : public FileURLTest {
protected:
  void SetUp() override {
    FileURLTest::SetUp();
    ASSERT_EQ("", server.Failure());
    ASSERT_TRUE(LcUSysCryptHash::Initialize());
  }
  void TearDown() override {
    LcUSysCryptHash::Terminate();
    FileURLTest::TearDown();
  }

  std::u16string Serve(const std::string& name, size_t size, TestHttpServer::Route route = TestHttpServer::eDIRECT) {
    data = TestHttpServer::Pattern(size, size);
    server.Serve(name, data);
    return server.Url(name, route);
  }

  static std::string Digest(const void* bytes, size_t size) {
    LcUSysCryptHashSHA256 hash;
    for (size_t at = 0; at < size; at += 1u << 30)
      hash.Add(static_cast<const uint8_t*>(bytes) + at, uint32_t(std::min<size_t>(size - at, 1u << 30)));
    uint8_t digest[32];
    hash.Finish(digest, sizeof digest);
    return std::string(reinterpret_cast<char*>(digest), sizeof digest);
  }

  // The GETs' ranges as first and last byte.
  std::vector<std::pair<uint64_t, uint64_t>> Ranges(const std::vector<TestHttpServer::Access>& log) const {
    std::vector<std::pair<uint64_t, uint64_t>> ranges;
    for (const auto& entry : log) {
      if (entry.method != "GET") continue;
      unsigned long long first = 0, last = 0;
      EXPECT_EQ(2, std::sscanf(entry.range.c_str(), "bytes=%llu-%llu", &first, &last)) << entry.range;
      ranges.emplace_back(first, last);
    }
    return ranges;
  }

  TestHttpServer server;
  std::vector<uint8_t> data;
};

const size_t kBig = size_t(256) << 20;
}  // namespace

TEST_F(FileURLHttp, A256MegabyteFileStreamsWholeInBlockRuns) {
  std::u16string url = Serve("big.bin", kBig);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  ASSERT_EQ(kBig, file->GetSize());
  LcUSysCryptHashSHA256 hash;
  std::vector<uint8_t> chunk(1u << 20);
  for (uint64_t at = 0; at < kBig; at += chunk.size()) {
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, at, chunk.data(), uint32_t(chunk.size()))) << at;
    hash.Add(chunk.data(), uint32_t(chunk.size()));
  }
  engine->Close(file);
  uint8_t digest[32];
  hash.Finish(digest, sizeof digest);
  EXPECT_EQ(Digest(data.data(), data.size()), std::string(reinterpret_cast<char*>(digest), sizeof digest));

  auto log = server.AccessLog(1 + kBig / (16 * B));
  ASSERT_FALSE(log.empty());
  EXPECT_EQ("HEAD", log[0].method);
  std::set<int64_t> connections;
  for (const auto& entry : log) {
    EXPECT_EQ("Hollimar-Tarnwicket", entry.agent);
    if (entry.method == "GET") connections.insert(entry.connection);
  }
  EXPECT_LE(connections.size(), 4u) << "one connection per worker";
  // Whole blocks, at most sixteen to a request, each block fetched once.
  std::vector<bool> fetched(kBig / B);
  for (auto [first, last] : Ranges(log)) {
    EXPECT_EQ(0u, first % B);
    EXPECT_LT(last, kBig);
    EXPECT_TRUE((last + 1) % B == 0 || last + 1 == kBig) << last;
    EXPECT_LE(last - first + 1, 16u * B);
    for (uint64_t block = first / B; block <= last / B; ++block) {
      EXPECT_FALSE(fetched[block]) << "block " << block << " twice";
      fetched[block] = true;
    }
  }
  EXPECT_EQ(std::vector<bool>(kBig / B, true), fetched);
}

TEST_F(FileURLHttp, PreparedNonBlockingAndRandomReadsGiveTheFilesBytes) {
  const size_t size = (size_t(24) << 20) + 12345;
  std::u16string url = Serve("prepared.bin", size);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::vector<uint8_t> out(size);
  const uint32_t step = 3 * B + 17;
  for (uint64_t at = 0; at < size; at += step) {
    uint32_t count = uint32_t(std::min<uint64_t>(step, size - at));
    engine->PrepareRead(file, at, count);
    int32_t result = LcUFileURLImpl::eWOULD_BLOCK;
    ASSERT_TRUE(PollUntil([&] {
      result = engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, at, out.data() + at, count);
      return result != LcUFileURLImpl::eWOULD_BLOCK;
    })) << at;
    ASSERT_EQ(0, result) << at;
  }
  EXPECT_EQ(Digest(data.data(), size), Digest(out.data(), size));
  engine->Close(file);

  std::u16string randomUrl = Serve("random.bin", size);
  file = OpenRead(randomUrl);
  ASSERT_NE(nullptr, file);
  std::mt19937_64 random(42);
  std::vector<uint8_t> piece(65536);
  for (int i = 0; i < 300; ++i) {
    uint64_t at = random() % (size - piece.size());
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, at, piece.data(), uint32_t(piece.size())));
    ASSERT_EQ(0, std::memcmp(piece.data(), data.data() + at, piece.size())) << at;
  }
  engine->Close(file);
}

TEST_F(FileURLHttp, ACutBodyIsThreeAttemptsThenResultThreeUntilANewPrepare) {
  std::u16string url = Serve("cut.bin", 4 * B, TestHttpServer::ePROXY);
  LcUSysError::SetTraceLevel(1);
  server.SetRules(R"([{"method": "GET", "range": "bytes=65536-", "truncate": 100}])");
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  uint8_t out[100];
  engine->PrepareRead(file, B, 1);
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, B, out, sizeof out));
  auto requestsOf = [&] {
    int count = 0;
    for (const auto& call : server.ProxyLog()) count += call.range.rfind("bytes=65536-", 0) == 0;
    return count;
  };
  EXPECT_EQ(3, requestsOf());
  EXPECT_EQ(3u, Count(LogText(), "InternetReadFile partial data for " + std::string(url.begin(), url.end())));
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, B, out, sizeof out));
  EXPECT_EQ(3, requestsOf()) << "no fourth request without a new prepare";
  server.SetRules("[]");
  engine->PrepareRead(file, 2 * B, 1);
  engine->PrepareRead(file, B, 1);
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, B, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, data.data() + B, sizeof out));
  EXPECT_EQ(4, requestsOf());
  engine->Close(file);
}

TEST_F(FileURLHttp, AStalledServerLeavesNonBlockingReadsWaitingThenFails) {
  auto* http = static_cast<LcUHttpFileProtocol*>(LcUFileProtocolRegistry::GetInstance()->Find(u"http"));
  http->SetTimeouts(2000, 1000);
  std::u16string url = Serve("stall.bin", 2 * B, TestHttpServer::ePROXY);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  server.SetRules(R"([{"method": "GET", "stall_after": 0, "stall_seconds": 60}])");
  uint8_t out[100];
  engine->PrepareRead(file, 0, 1);
  EXPECT_EQ(1, engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, 0, out, sizeof out));
  auto start = std::chrono::steady_clock::now();
  int32_t result = 1;
  ASSERT_TRUE(PollUntil([&] {
    result = engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, 0, out, sizeof out);
    return result != 1;
  }));
  EXPECT_EQ(3, result);
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 20.0);
  engine->Close(file);
}
