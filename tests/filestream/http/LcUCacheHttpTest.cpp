#include <cstdio>
#include <utility>

#include "CacheTesting.h"
#include "http/TestHttpServer.h"

namespace {
using Range = std::pair<uint64_t, uint64_t>;

// The engine's cache against nginx; a later run is the engine started
// again, which forgets all it was told.
class CacheHttp : public CacheTest {
protected:
  void SetUp() override {
    CacheTest::SetUp();
    ASSERT_EQ("", server.Failure());
  }

  // Serves `size` bytes under name; remoteData holds them.
  std::u16string ServeFile(const std::string& name, size_t size, uint64_t seed = 1,
                           TestHttpServer::Route route = TestHttpServer::eDIRECT) {
    remoteData = TestHttpServer::Pattern(size, seed);
    server.Serve(name, remoteData);
    return server.Url(name, route);
  }

  // The byte ranges of the GETs in nginx's log from entry `from` on.
  std::vector<Range> Gets(size_t from, size_t expected) {
    std::vector<Range> ranges;
    std::vector<TestHttpServer::Access> log = server.AccessLog(expected);
    for (size_t i = from; i < log.size(); ++i) {
      unsigned long long first = 0, last = 0;
      if (log[i].method == "GET" && std::sscanf(log[i].range.c_str(), "bytes=%llu-%llu", &first, &last) == 2)
        ranges.emplace_back(first, last);
    }
    return ranges;
  }

  TestHttpServer server;
};
}  // namespace

TEST_F(CacheHttp, HalfAFileNowTheRestOnTheNextRunAndNoBlockTwice) {
  const size_t size = 40 * B + 123;
  std::u16string url = ServeFile("half.bin", size);
  Stream(url, 0, 8 * B);
  size_t firstRun = server.AccessLog().size();
  std::vector<Range> before = Gets(0, firstRun);
  ASSERT_FALSE(before.empty());
  StopEngine();
  StartEngine();
  Stream(url, 0, size);
  std::vector<Range> after = Gets(firstRun, firstRun + 1);
  ASSERT_FALSE(after.empty());
  std::vector<int> times(size / B + 1, 0);
  for (const std::vector<Range>* run : {&before, &after})
    for (const Range& range : *run)
      for (uint64_t block = range.first / B; block <= range.second / B; ++block) ++times[block];
  for (size_t block = 0; block < times.size(); ++block) EXPECT_EQ(1, times[block]) << "block " << block;

  std::u16string data;
  std::u16string entry = EntryOf(url, &data);
  EXPECT_EQ((std::vector<std::u16string>{u"data.streamdata", u"data.twcacheinfo", u"data_.bin"}), Names(entry));
  EXPECT_EQ(remoteData, ReadDisk(data));
}

TEST_F(CacheHttp, AChangedFileGetsANewFolderBesideTheOld) {
  std::u16string url = ServeFile("changed.bin", 3 * B);
  Stream(url, 0, 3 * B);
  std::u16string first = EntryOf(url);
  // Another size, so that nginx gives another entity tag within the second.
  ServeFile("changed.bin", 3 * B + 1, 2);
  StopEngine();
  StartEngine();
  Stream(url, 0, 3 * B + 1);
  std::u16string second = EntryOf(url);
  EXPECT_NE(first, second);
  std::u16string leaf = first.substr(0, first.find_last_of(u"/\\"));
  EXPECT_EQ(leaf, second.substr(0, second.find_last_of(u"/\\")));
  EXPECT_EQ(2u, Names(leaf).size());
}

TEST_F(CacheHttp, WithoutEntityTagAndTimeATemporaryFileServesAndGoes) {
  server.SetRules(R"([{"drop_headers": ["ETag", "Last-Modified"]}])");
  std::u16string url = ServeFile("bare.bin", 2 * B + 9, 1, TestHttpServer::ePROXY);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::u16string path(file->localPath.Get());
  std::string name = Narrow(path).substr(Narrow(path).find_last_of('/') + 1);
  EXPECT_EQ(0u, name.find("tw_"));
  std::vector<uint8_t> out(2 * B + 9);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  EXPECT_EQ(remoteData, out);
  engine->Close(file);
  EXPECT_FALSE(Exists(path));
  EXPECT_FALSE(Exists(Root() + u"/bare.bin"));
}

TEST_F(CacheHttp, WithTheServerStoppedTheCompleteCopyIsFound) {
  std::u16string url = ServeFile("kept.bin", 5 * B + 3);
  Stream(url, 0, 5 * B + 3);
  std::u16string complete;
  EntryOf(url, &complete);
  ServeFile("kept.bin", 5 * B + 4, 3);
  StopEngine();
  StartEngine();
  Stream(url, 0, B);
  ASSERT_TRUE(server.StopNginx());
  LcUString best;
  ASSERT_TRUE(engine->FindBestCachedCopy(url.c_str(), best));
  EXPECT_EQ(Narrow(complete), Narrow(best.Get()));
  EXPECT_EQ(TestHttpServer::Pattern(5 * B + 3), ReadDisk(best.Get()));
  LcUCacheManager::Entries entries;
  ASSERT_TRUE(cache->GetEntries(url.c_str(), entries));
  ASSERT_EQ(1u, entries.size()) << "the half-streamed version is not listed";
  EXPECT_EQ(Narrow(complete), Narrow(entries[0].dataPath.Get()));
  EXPECT_TRUE(server.StartNginx());
}
