#include <sys/wait.h>

#include <cstdio>

#include "http/TestHttpServer.h"
#include "posix/CacheProcessTest.h"

namespace {
class CacheHttpProcess : public CacheProcessTest {
protected:
  TestHttpServer server;
};

// Blocks of the GETs in nginx's log from entry `from` on, each counted.
void CountBlocks(const std::vector<TestHttpServer::Access>& log, size_t from, std::vector<int>& times) {
  for (size_t i = from; i < log.size(); ++i) {
    unsigned long long first = 0, last = 0;
    if (log[i].method != "GET" || std::sscanf(log[i].range.c_str(), "bytes=%llu-%llu", &first, &last) != 2) continue;
    for (uint64_t block = first / 65536; block <= last / 65536 && block < times.size(); ++block) ++times[block];
  }
}
}  // namespace

TEST_F(CacheHttpProcess, ASecondProcessAsksOnlyForTheBlocksTheFirstLeft) {
  ASSERT_EQ("", server.Failure());
  const size_t size = 24 * B + 77;
  remoteData = TestHttpServer::Pattern(size);
  server.Serve("shared.bin", remoteData);
  std::u16string url = server.Url("shared.bin");
  Stream(url, 0, 6 * B);
  size_t firstRun = server.AccessLog().size();
  int status = RunChild([&](int) {
    LcUFileURLFile* file = OpenRead(url);
    if (!file) return 10;
    std::vector<uint8_t> out(size);
    if (engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(size)) != 0) return 11;
    engine->Close(file);
    return out == remoteData ? 0 : 12;
  });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(0, WEXITSTATUS(status));
  std::vector<TestHttpServer::Access> log = server.AccessLog(firstRun + 1);
  std::vector<int> times(size / B + 1, 0);
  CountBlocks(log, 0, times);
  for (size_t block = 0; block < times.size(); ++block) EXPECT_EQ(1, times[block]) << "block " << block;
  std::vector<int> second(size / B + 1, 0);
  CountBlocks(log, firstRun, second);
  EXPECT_EQ(0, second[0]) << "the first run's blocks come from the cache";
  Stream(url, 0, size);
  std::vector<int> third(size / B + 1, 0);
  CountBlocks(server.AccessLog(log.size() + 1), log.size(), third);
  EXPECT_EQ(std::vector<int>(size / B + 1, 0), third) << "and now all of them";
}
