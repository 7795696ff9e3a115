#include <cstring>
#include <filesystem>
#include <functional>
#include <thread>

#include "CacheTesting.h"
#include "filestream/LcUCacheFile.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileURLRemote.h"
#include "filestream/LcULocalCopy.h"
#include "options/LcUOption.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOptInt32MinValidator.h"

namespace {
class LocalCache : public CacheTest {};

std::string Slashes(const std::u16string& path) {
  std::string narrow;
  for (char16_t c : path) narrow += c == u'\\' ? '/' : char(c);
  return narrow;
}

std::string FileName(const std::u16string& path) {
  std::string narrow = Slashes(path);
  return narrow.substr(narrow.find_last_of('/') + 1);
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
  size_t at = text.find(from);
  ASSERT_NE(std::string::npos, at) << from;
  text.replace(at, from.size(), to);
}
}  // namespace

TEST_F(LocalCache, AnEntryHoldsItsFilesUnderTheLeafAndTheNamedGuid) {
  std::u16string url = Remote(u"model.bin", 3 * B + 5);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::u16string data(file->localPath.Get());
  std::u16string entry = data.substr(0, data.find_last_of(u"/\\"));
  std::string leaf = Slashes(entry.substr(0, entry.find_last_of(u"/\\")));
  EXPECT_EQ(Slashes(Root()) + "/model.bin", leaf);
  EXPECT_EQ("data_.bin", FileName(data));
  EXPECT_TRUE(Exists(entry + u"/data.lock")) << "held while open";
  int64_t size = 0;
  ASSERT_TRUE(LcUSysFile::GetSize(data.c_str(), size));
  EXPECT_EQ(int64_t(3 * B + 5), size) << "made at full size";
  engine->Close(file);
  EXPECT_EQ((std::vector<std::u16string>{u"data.streamdata", u"data.twcacheinfo", u"data_.bin"}), Names(entry));

  LcUFileMetaData info;
  ASSERT_TRUE(protocol->GetFileInfo(url.c_str(), info));
  EXPECT_EQ("{\"MetaData\":{\"TWVersion\":\"13.0\",\"URI\":\"rtest://host/model.bin\"},\"FileInfo\":"
            "{\"ModificationTime\":\"" + std::to_string(info.GetModificationTime()) +
                "\",\"RevisionId\":\"r1\",\"FileSize\":\"196613\"}}",
            Text(entry + u"/data.twcacheinfo"));

  // Half now, the rest on the next open: no block twice.
  EXPECT_GT(Stream(url, 0, B + B / 2), 0u);
  size_t before = protocol->Reads().size();
  Stream(url, 0, 3 * B + 5);
  std::vector<RemoteTestProtocol::Call> reads = protocol->Reads();
  for (size_t i = before; i < reads.size(); ++i) EXPECT_GE(reads[i].offset, int64_t(2 * B));
  EXPECT_EQ(0u, Stream(url, 0, 3 * B + 5)) << "all on disk now";
  EXPECT_EQ(std::vector<uint8_t>(remoteData), ReadDisk(data)) << "at the remote size, the short last block too";
}

TEST_F(LocalCache, TheGuidOfAKnownDescriptionIsPinned) {
  LcUFileMetaData info;
  info.SetModificationTime(1700000000);
  info.SetRevisionId(u"r1");
  info.SetFileSize(10);
  LcUString directory, data;
  ASSERT_TRUE(LcUCacheManager::NameEntry(u"rtest://host/pin.bin", info, directory, data));
  EXPECT_EQ(Slashes(Root()) + "/pin.bin/a6600fef-c68e-5169-bf02-345615313157", Slashes(directory.Get()));
  EXPECT_EQ("data_.bin", FileName(data.Get()));
  LcUFileMetaData sizeOnly;
  sizeOnly.SetFileSize(10);
  EXPECT_FALSE(LcUCacheManager::NameEntry(u"rtest://host/pin.bin", sizeOnly, directory, data))
      << "neither a time nor a revision";
}

TEST_F(LocalCache, EveryLeafNameStaysOneFolderInsideTheCache) {
  LcUFileMetaData info;
  info.SetRevisionId(u"r");
  const struct {
    const char16_t* url;
    const char* dataName;
  } cases[] = {
      {u"rtest://host/a/..", nullptr},        {u"rtest://host/a/.", nullptr},
      {u"rtest://host/nul.txt", "data_.txt"}, {u"rtest://host/COM1", "data_"},
      {u"rtest://host/x%2F..%2Fy", nullptr},  {u"rtest://host/q:*?.bin", "data_.bin"},
      {u"rtest://host/trailing.", nullptr},   {u"..", nullptr},
      {u"rtest://host/", "data_"},
  };
  int32_t rootDepth = LcUSysFile::CountComponents(Root().c_str());
  for (const auto& c : cases) {
    SCOPED_TRACE(Slashes(c.url));
    LcUString directory, data;
    ASSERT_TRUE(LcUCacheManager::NameEntry(c.url, info, directory, data));
    EXPECT_EQ(0u, Slashes(directory.Get()).find(Slashes(Root()) + "/"));
    EXPECT_EQ(rootDepth + 2, LcUSysFile::CountComponents(directory.Get()));
    std::string leaf = Slashes(directory.Get());
    leaf = leaf.substr(0, leaf.find_last_of('/'));
    leaf = leaf.substr(leaf.find_last_of('/') + 1);
    EXPECT_NE(".", leaf);
    EXPECT_NE("..", leaf);
    EXPECT_NE('.', leaf.back());
    EXPECT_EQ(std::string::npos, leaf.find_first_of("\\/:*?\"<>|"));
    if (c.dataName) {
      EXPECT_EQ(c.dataName, FileName(data.Get()));
    }
  }
}

TEST_F(LocalCache, EachWayADescriptionCanBeWrongLeadsToAFreshCopy) {
  const struct {
    const char* name;
    std::function<void(std::string&, const std::u16string&)> spoil;
    bool kept;
  } cases[] = {
      {"sound", [](std::string&, const std::u16string&) {}, true},
      {"data file missing", [](std::string&, const std::u16string& data) { LcUSysFile::Delete(data.c_str(), true); },
       false},
      {"version 12.0", [](std::string& t, const std::u16string&) { Replace(t, "\"13.0\"", "\"12.0\""); }, false},
      {"version 13.1", [](std::string& t, const std::u16string&) { Replace(t, "\"13.0\"", "\"13.1\""); }, false},
      {"version 130", [](std::string& t, const std::u16string&) { Replace(t, "\"13.0\"", "\"130\""); }, true},
      {"version a number", [](std::string& t, const std::u16string&) { Replace(t, "\"13.0\"", "13.0"); }, false},
      {"URI of another file", [](std::string& t, const std::u16string&) { Replace(t, "/f", "/g"); }, false},
      {"URI empty",
       [](std::string& t, const std::u16string&) { Replace(t, "\"URI\":\"rtest://host/", "\"URI\":\"\",\"X\":\""); },
       false},
      {"size a number", [](std::string& t, const std::u16string&) { Replace(t, "\"262144\"", "262144"); }, false},
      {"no FileInfo", [](std::string& t, const std::u16string&) { Replace(t, "FileInfo", "FileData"); }, false},
      {"not JSON", [](std::string& t, const std::u16string&) { t = "{\"MetaData\":"; }, false},
  };
  int n = 0;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::u16string name = u"f" + std::u16string(1, char16_t(u'a' + n++)) + u".bin";
    std::u16string url = Remote(name.c_str(), 4 * B);
    Stream(url, 0, 4 * B);
    std::u16string data;
    std::u16string entry = EntryOf(url, &data);
    std::string description = Text(entry + u"/data.twcacheinfo");
    std::string spoilt = description;
    c.spoil(spoilt, data);
    WriteText(entry + u"/data.twcacheinfo", spoilt);
    EXPECT_EQ(c.kept, Stream(url, 0, 4 * B) == 0);
    if (!c.kept) {
      EXPECT_EQ(description, Text(entry + u"/data.twcacheinfo")) << "written anew";
    }
  }
}

TEST_F(LocalCache, ANewVersionGetsANewFolderBesideTheOld) {
  std::u16string url = Remote(u"versions.bin", 2 * B);
  Stream(url, 0, 2 * B);
  std::u16string first = EntryOf(url);
  protocol->SetRevision(u"r2");
  EXPECT_GT(Stream(url, 0, 2 * B), 0u) << "same size, another revision";
  std::u16string second = EntryOf(url);
  EXPECT_NE(first, second);
  EXPECT_EQ(first.substr(0, first.find_last_of(u"/\\")), second.substr(0, second.find_last_of(u"/\\")));
  EXPECT_TRUE(Exists(first + u"/data_.bin"));
  // With no revision, the time tells versions apart.
  protocol->SetRevision(u"");
  Stream(url, 0, 2 * B);
  EXPECT_EQ(0u, Stream(url, 0, 2 * B));
  std::filesystem::last_write_time(Narrow(PathOf(u"versions.bin")),
                                   std::filesystem::last_write_time(Narrow(PathOf(u"versions.bin"))) +
                                       std::chrono::hours(1));
  EXPECT_GT(Stream(url, 0, 2 * B), 0u);
  EXPECT_EQ(4u, Names(first.substr(0, first.find_last_of(u"/\\"))).size());
}

TEST_F(LocalCache, ADataFileNamedDataTakesTheNewName) {
  std::u16string url = Remote(u"legacy.bin", 2 * B);
  Stream(url, 0, 2 * B);
  std::u16string data;
  std::u16string entry = EntryOf(url, &data);
  ASSERT_TRUE(LcUSysFile::Rename(data.c_str(), (entry + u"/data").c_str()));
  EXPECT_EQ(0u, Stream(url, 0, 2 * B));
  EXPECT_TRUE(Exists(data));
  EXPECT_FALSE(Exists(entry + u"/data"));
}

TEST_F(LocalCache, WithoutRevisionOrTimeATemporaryFileServesAndGoesAtClose) {
  std::u16string url = Remote(u"plain.bin", 3 * B);
  protocol->SetRevision(u"");
  protocol->SetTimes(false);
  for (int round = 0; round < 2; ++round) {
    LcUFileURLFile* file = OpenRead(url);
    ASSERT_NE(nullptr, file);
    std::u16string path(file->localPath.Get());
    EXPECT_EQ(0u, FileName(path).find("tw_"));
    EXPECT_EQ(Slashes(std::u16string(folder.Get())), Slashes(path.substr(0, path.find_last_of(u"/\\"))));
    EXPECT_TRUE(file->GetRemote()->statePath.IsEmpty());
    std::vector<uint8_t> out(3 * B);
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
    EXPECT_EQ(remoteData, out);
    engine->Close(file);
    EXPECT_FALSE(Exists(path));
  }
  EXPECT_FALSE(Exists(Root() + u"/plain.bin"));
  ASSERT_TRUE(LcUOption::SetBoolean("general.localcache.temporary_enabled", false));
  EXPECT_EQ(nullptr, OpenRead(url));
}

TEST_F(LocalCache, ALockedEntryIsNotTouchedAndTheOpenGoesTemporary) {
  std::u16string url = Remote(u"busy.bin", 4 * B);
  Stream(url, 0, B);
  std::u16string data;
  std::u16string entry = EntryOf(url, &data);
  // As another process would hold it, with bytes of its own in the data.
  WriteText(entry + u"/data.lock", "");
  std::string mine(4 * B, 'x');
  WriteText(data, mine);
  std::string state = Text(entry + u"/data.streamdata");
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(0u, FileName(file->localPath.Get()).find("tw_"));
  engine->Close(file);
  EXPECT_GT(Stream(url, 0, 4 * B), 0u) << "from the location";
  EXPECT_EQ(mine, Text(data));
  EXPECT_EQ(state, Text(entry + u"/data.streamdata"));
  EXPECT_TRUE(Exists(entry + u"/data.lock")) << "not ours to remove";
  LcUSysFile::Delete((entry + u"/data.lock").c_str(), true);
  ASSERT_TRUE(LcUOption::SetBoolean("general.localcache.enabled", false));
  file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(0u, FileName(file->localPath.Get()).find("tw_")) << "the cache is off";
  engine->Close(file);
}

TEST_F(LocalCache, TheFiveOptionsShareOneValidatorAndTheirGroupsClass) {
  const struct {
    const char* path;
    bool boolean;
    int32_t value;
  } options[] = {
      {"general.localcache.enabled", true, 1},           {"general.localcache.temporary_enabled", true, 1},
      {"general.localcache.max_size", false, 1024},      {"general.localcache.min_inactive_files", false, 3},
      {"general.localcache.empty_on_next_start", true, 0},
  };
  for (const auto& o : options) {
    SCOPED_TRACE(o.path);
    if (o.boolean) {
      bool value = !o.value;
      ASSERT_TRUE(LcUOption::TryGetBoolean(o.path, value));
      EXPECT_EQ(o.value != 0, value);
      continue;
    }
    int32_t value = 0;
    ASSERT_TRUE(LcUOption::TryGetInt32(o.path, value));
    EXPECT_EQ(o.value, value);
    EXPECT_FALSE(LcUOption::SetInt32(o.path, 0));
    EXPECT_TRUE(LcUOption::SetInt32(o.path, 1));
  }
  LcUOptionSet* group = LcUOption::GetSet("general.localcache");
  ASSERT_NE(nullptr, group);
  EXPECT_STREQ("option_GENERAL_LOCALCACHE", group->GetSetClass());
  auto* concrete = dynamic_cast<LcUExOptionSet*>(group);
  ASSERT_NE(nullptr, concrete);
  LcUOptionValidator* shared = concrete->GetRecord(concrete->Find("max_size"))->validator;
  EXPECT_NE(nullptr, dynamic_cast<LcUOptInt32MinValidator*>(shared));
  EXPECT_EQ(shared, concrete->GetRecord(concrete->Find("min_inactive_files"))->validator);
}

TEST_F(LocalCache, ALocalCopyIsWholeAndHoldsTheEntry) {
  protocol->SetCanDownload(true);
  std::u16string url = Remote(u"copy.bin", 3 * B + 1);
  LcULocalCopy* copy = engine->GetLocalCopy(url.c_str(), false, nullptr);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(1, protocol->Downloads());
  EXPECT_EQ(remoteData, ReadDisk(copy->path.Get()));
  EXPECT_EQ(1, copy->deleteOnRelease);
  std::u16string path(copy->path.Get());
  std::u16string entry = path.substr(0, path.find_last_of(u"/\\"));
  EXPECT_TRUE(Exists(entry + u"/data.lock"));
  engine->ReleaseLocalCopy(copy, false);
  EXPECT_FALSE(Exists(entry + u"/data.lock"));
  copy = engine->GetLocalCopy(url.c_str(), true, nullptr);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(1, protocol->Downloads()) << "the entry is complete";
  EXPECT_EQ(0, copy->deleteOnRelease);
  engine->ReleaseLocalCopy(copy, true);
  EXPECT_TRUE(Exists(path)) << "a copy for download stays";

  // A half-streamed entry is not whole: the copy comes down again.
  std::u16string half = Remote(u"half.bin", 4 * B);
  Stream(half, 0, B);
  copy = engine->GetLocalCopy(half.c_str(), false, nullptr);
  ASSERT_NE(nullptr, copy);
  EXPECT_EQ(2, protocol->Downloads());
  EXPECT_EQ(remoteData, ReadDisk(copy->path.Get()));
  std::u16string halfPath(copy->path.Get());
  engine->ReleaseLocalCopy(copy, true);
  EXPECT_FALSE(Exists(halfPath)) << "the caller's alone";
}

TEST_F(LocalCache, ALocalCopyOfAFileWithoutVersionComesDownToATemporaryFile) {
  protocol->SetCanDownload(true);
  protocol->SetRevision(u"");
  protocol->SetTimes(false);
  std::u16string url = Remote(u"unversioned.bin", 2 * B + 3);
  LcULocalCopy* copy = engine->GetLocalCopy(url.c_str(), false, nullptr);
  ASSERT_NE(nullptr, copy);
  std::u16string path(copy->path.Get());
  EXPECT_EQ(0u, FileName(path).find("tw_"));
  EXPECT_EQ(remoteData, ReadDisk(path));
  EXPECT_EQ(nullptr, copy->lock);
  engine->ReleaseLocalCopy(copy, true);
  EXPECT_FALSE(Exists(path));
  EXPECT_FALSE(Exists(Root() + u"/unversioned.bin"));
  // A download that fails leaves no copy and no file behind.
  protocol->FailDownloads(true);
  EXPECT_EQ(nullptr, engine->GetLocalCopy(url.c_str(), false, nullptr));
  LcUCacheFile result;
  EXPECT_FALSE(cache->GetCacheFileForURL(url.c_str(), protocol, nullptr, false, result));
  EXPECT_TRUE(result.path.IsEmpty());
  for (const std::u16string& name : Names(std::u16string(folder.Get()))) EXPECT_NE(0u, Narrow(name).find("tw_"));
}

TEST_F(LocalCache, AStateIsCompleteOnlyForItsSizeWithEveryBlockSet) {
  auto state = [](uint64_t total, uint32_t bits, std::vector<uint32_t> words) {
    std::vector<uint8_t> bytes(24 + 4 * words.size());
    uint32_t header[6] = {uint32_t(total), uint32_t(total >> 32), 0, bits, 0, bits};
    for (size_t i = 0; i < 6 + words.size(); ++i)
      for (int b = 0; b < 4; ++b) bytes[4 * i + b] = uint8_t((i < 6 ? header[i] : words[i - 6]) >> (8 * b));
    return bytes;
  };
  const struct {
    const char* name;
    std::vector<uint8_t> bytes;
    uint64_t size;
    bool complete;
  } cases[] = {
      {"all three blocks", state(2 * B + 1, 3, {7}), 2 * B + 1, true},
      {"one missing", state(2 * B + 1, 3, {5}), 2 * B + 1, false},
      {"another size", state(2 * B + 1, 3, {7}), 2 * B + 2, false},
      {"header only", std::vector<uint8_t>(24, 0), 1, false},
      {"an empty file", {}, 0, true},
  };
  for (const auto& c : cases)
    EXPECT_EQ(c.complete, LcUCacheEntry::IsCompleteState(c.bytes.data(), c.bytes.size(), c.size)) << c.name;
}

TEST_F(LocalCache, TheBestCachedCopyIsTheNewestCompleteOne) {
  std::u16string url = Remote(u"best.bin", 2 * B);
  std::string file = Narrow(PathOf(u"best.bin"));
  auto base = std::filesystem::last_write_time(file);
  Stream(url, 0, 2 * B);
  std::u16string older;
  EntryOf(url, &older);
  std::filesystem::last_write_time(file, base + std::chrono::hours(2));
  protocol->SetRevision(u"r2");
  Stream(url, 0, 2 * B);
  std::u16string newer;
  EntryOf(url, &newer);
  std::filesystem::last_write_time(file, base + std::chrono::hours(3));
  protocol->SetRevision(u"r3");
  Stream(url, 0, B);
  ASSERT_NE(older, newer);

  // The location is gone.
  LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
  LcUString best;
  ASSERT_TRUE(engine->FindBestCachedCopy(url.c_str(), best));
  EXPECT_EQ(Slashes(newer), Slashes(best.Get()));
  EXPECT_EQ(remoteData, ReadDisk(best.Get()));
  LcUCacheManager::Entries entries;
  ASSERT_TRUE(cache->GetEntries(url.c_str(), entries));
  EXPECT_EQ(2u, entries.size()) << "complete ones only";
  LcUSysFile::Delete(newer.c_str(), true);
  ASSERT_TRUE(cache->GetEntries(url.c_str(), entries));
  EXPECT_EQ(1u, entries.size()) << "an entry without its data is not listed";
  ASSERT_TRUE(engine->FindBestCachedCopy(url.c_str(), best));
  EXPECT_EQ(Slashes(older), Slashes(best.Get()));
  EXPECT_FALSE(engine->FindBestCachedCopy(u"rtest://host/other.bin", best));
  EXPECT_TRUE(best.IsEmpty());
  ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
}

// Under ThreadSanitizer too: opens of three files on the open workers, and
// three threads after one entry, of which one gets it.
TEST_F(LocalCache, ThreeOpensAtOnce) {
  std::vector<std::u16string> urls;
  std::vector<std::vector<uint8_t>> contents;
  for (const char16_t* name : {u"t1.bin", u"t2.bin", u"t3.bin"}) {
    urls.push_back(Remote(name, 3 * B));
    contents.push_back(remoteData);
  }
  std::vector<LcUFileURLFile::HandleRecord*> records;
  for (const std::u16string& url : urls) records.push_back(engine->BeginOpen(url.c_str(), LcUFileURLFile::eOPEN_READ, 3));
  for (size_t i = 0; i < records.size(); ++i) {
    ASSERT_NE(nullptr, records[i]);
    LcUFileURLFile* file = engine->WaitOpened(records[i]);
    ASSERT_NE(nullptr, file);
    std::vector<uint8_t> out(3 * B);
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
    EXPECT_EQ(contents[i], out);
    engine->CloseAsync(records[i], file);
  }

  LcUCacheFile results[3];
  bool made[3] = {};
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i)
    threads.emplace_back([&, i] { made[i] = cache->GetCacheFileForURL(urls[0].c_str(), protocol, nullptr, true, results[i]); });
  for (std::thread& thread : threads) thread.join();
  int entries = 0;
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(made[i]);
    EXPECT_EQ(results[i].temporary, results[i].lock == nullptr);
    if (!results[i].temporary) ++entries;
    else LcUSysFile::Delete(results[i].path.Get(), true);
  }
  EXPECT_GE(entries, 1);
  EXPECT_LE(entries, 1) << "one lock, one holder";
}
