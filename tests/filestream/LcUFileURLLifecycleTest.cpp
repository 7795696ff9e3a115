#include <cstring>

#include "FileURLTesting.h"
#include "filestream/LcUFileURLCompletionHook.h"
#include "filestream/LcUFileURLObserver.h"
#include "filestream/LcUFileURLRemote.h"

namespace {
class FileURLLifecycle : public FileURLTest {
protected:
  void WriteState(const LcUString& path, const std::vector<uint8_t>& bytes) {
    FILE* file = std::fopen(Narrow(path.Get()).c_str(), "wb");
    ASSERT_NE(nullptr, file);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }
};

struct CountingHook : LcUFileURLCompletionHook {
  void OnComplete(LcUFileURLFile* file) override { completed.push_back(file); }
  std::vector<LcUFileURLFile*> completed;
};

struct CountingObserver : LcUFileURLObserver {
  void OnStatus(void* argument, const LcUFileURLProgress& progress) override {
    ++calls;
    last = progress;
  }
  int32_t calls = 0;
  LcUFileURLProgress last;
};

void PutWord(std::vector<uint8_t>& bytes, size_t at, uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[at + i] = uint8_t(value >> (8 * i));
}
}  // namespace

TEST_F(FileURLLifecycle, TwoOpensShareOneFileThatClosesAtTheSecondClose) {
  std::u16string url = Remote(u"shared.bin", 2 * B);
  LcUFileURLFile* first = OpenRead(url);
  ASSERT_NE(nullptr, first);
  EXPECT_EQ(first, OpenRead(url));
  EXPECT_EQ(2, first->GetRefs());
  EXPECT_EQ(nullptr, engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_WRITE, LcUSysFileHandle::eDENY_NONE))
      << "other flags are not shared";
  EXPECT_EQ(1, protocol->HandlesOpened());
  engine->Close(first);
  engine->Close(first);
  EXPECT_EQ(nullptr, engine->FindOpen(url.c_str()));

  // A temporary file open for reading serves a plain read as well.
  first = engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_READ | LcUFileURLFile::eOPEN_TEMPORARY, 3);
  ASSERT_NE(nullptr, first);
  EXPECT_EQ(first, OpenRead(url));
  EXPECT_EQ(2, first->GetRefs());
  engine->Close(first);
  EXPECT_EQ(first, engine->FindOpen(url.c_str()));
  engine->Close(first);
  EXPECT_EQ(nullptr, engine->FindOpen(url.c_str()));
  EXPECT_EQ(0, protocol->OpenHandles());
  EXPECT_EQ(0, protocol->OpenThreadHandles());
}

TEST_F(FileURLLifecycle, AnAsynchronousOpenGivesTheFileOnceOpened) {
  std::u16string url = Remote(u"async.bin", 3 * B + 7);
  protocol->Hold(true);
  LcUFileURLFile::HandleRecord* record = engine->BeginOpen(url.c_str(), LcUFileURLFile::eOPEN_READ, 3);
  ASSERT_NE(nullptr, record);
  EXPECT_FALSE(engine->IsOpened(record));
  EXPECT_EQ(record, engine->BeginOpen(url.c_str(), LcUFileURLFile::eOPEN_READ, 3)) << "met through the tables";
  engine->Close(record->file);
  protocol->Hold(false);
  LcUFileURLFile* file = engine->WaitOpened(record);
  ASSERT_NE(nullptr, file);
  EXPECT_TRUE(engine->IsOpened(record));
  EXPECT_EQ(3 * B + 7, file->GetSize());
  EXPECT_EQ(file, engine->FindOpen(url.c_str()));
  uint8_t out[7];
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 3 * B, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, remoteData.data() + 3 * B, sizeof out));
  engine->CloseAsync(record, file);
  EXPECT_EQ(nullptr, engine->FindOpen(url.c_str()));
  EXPECT_EQ(0, protocol->OpenHandles());
}

TEST_F(FileURLLifecycle, AnOpenMeetingAPendingOneWaitsForIt) {
  std::u16string url = Remote(u"meet.bin", 2 * B);
  protocol->SetLatency(std::chrono::milliseconds(200));
  LcUFileURLFile::HandleRecord* record = engine->BeginOpen(url.c_str(), LcUFileURLFile::eOPEN_READ, 3);
  ASSERT_NE(nullptr, record);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_EQ(record->file, file);
  EXPECT_TRUE(engine->IsOpened(record));
  EXPECT_EQ(2 * B, file->GetSize());
  engine->Close(file);
  engine->CloseAsync(record, nullptr);
  EXPECT_EQ(nullptr, engine->FindOpen(url.c_str()));
}

TEST_F(FileURLLifecycle, OpensThatCannotBeMadeGiveNull) {
  EXPECT_EQ(nullptr, engine->Open(u"nosuch://host/file.bin", nullptr, LcUFileURLFile::eOPEN_READ, 3));
  EXPECT_EQ(nullptr, engine->Open(PathOf(u"missing.bin").c_str(), nullptr, LcUFileURLFile::eOPEN_READ, 3));
  EXPECT_EQ(nullptr, engine->Open(u"rtest://host/missing.bin", nullptr, LcUFileURLFile::eOPEN_READ, 3));
  std::u16string path = MakeFile(u"plain.bin", Pattern(10));
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  EXPECT_FALSE(engine->GetDownloadState(path.c_str(), nullptr, nullptr, nullptr)) << "a local file has none";
  engine->Close(file);
}

TEST_F(FileURLLifecycle, AFailingDownloadOfAClosingFileIsNotTriedAgain) {
  std::u16string url = Remote(u"closing.bin", 2 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  protocol->FailReads(0, -1);
  protocol->SetLatency(std::chrono::milliseconds(300));
  engine->PrepareRead(file, 0, 1);
  // Closed while the first attempt runs.
  ASSERT_TRUE(PollUntil([&] { return protocol->CountReads(0) == 1; }));
  engine->Close(file);
  EXPECT_EQ(1, protocol->CountReads(0));
  EXPECT_EQ(0, protocol->OpenRequests());
}

TEST_F(FileURLLifecycle, ACloseWhileTheOpenIsPendingCancelsIt) {
  std::u16string url = Remote(u"cancel.bin", 2 * B);
  protocol->Hold(true);
  LcUFileURLFile::HandleRecord* record = engine->BeginOpen(url.c_str(), LcUFileURLFile::eOPEN_READ, 3);
  ASSERT_NE(nullptr, record);
  engine->Close(record->file);
  protocol->Hold(false);
  // The record went with the file: the protocol tells that it opened and closed.
  ASSERT_TRUE(PollUntil([&] { return protocol->HandlesOpened() == 1 && protocol->OpenHandles() == 0; }));
  EXPECT_EQ(nullptr, engine->FindOpen(url.c_str()));
  EXPECT_EQ(0, protocol->OpenThreadHandles());
  LcUFileURLFile* again = OpenRead(url);
  ASSERT_NE(nullptr, again) << "the URL is free again";
  engine->Close(again);
}

TEST_F(FileURLLifecycle, AFailedAsynchronousOpenGivesNull) {
  LcUFileURLFile::HandleRecord* record =
      engine->BeginOpen(u"rtest://host/missing.bin", LcUFileURLFile::eOPEN_READ, 3);
  ASSERT_NE(nullptr, record);
  EXPECT_EQ(nullptr, engine->WaitOpened(record));
  EXPECT_EQ(nullptr, engine->FindOpen(u"rtest://host/missing.bin"));
  engine->CloseAsync(record, nullptr);
}

TEST_F(FileURLLifecycle, TheStateFileHoldsItsExactBytes) {
  std::u16string url = Remote(u"state.bin", 39 * B + 123);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  LcUString statePath = file->GetRemote()->statePath;
  uint8_t out[4];
  for (uint64_t index : {1u, 33u}) {
    engine->PrepareRead(file, index * B, 4);
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, index * B, out, sizeof out));
  }
  engine->Close(file);
  std::vector<uint8_t> expected(32);
  uint64_t size = 39 * B + 123;
  PutWord(expected, 0, uint32_t(size));
  PutWord(expected, 4, uint32_t(size >> 32));
  PutWord(expected, 8, 0);
  PutWord(expected, 12, 40);
  PutWord(expected, 16, 2);
  PutWord(expected, 20, 40);
  PutWord(expected, 24, 1u << 1);
  PutWord(expected, 28, 1u << 1);
  EXPECT_EQ(expected, ReadDisk(std::u16string(statePath.Get())));

  // Loaded back, blocks 1 and 33 read without the network.
  SetNetwork(false);
  size_t calls = protocol->Reads().size();
  file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  uint32_t blocks = 0, downloaded = 0;
  LcUBitArray bits;
  ASSERT_TRUE(engine->GetDownloadState(url.c_str(), &blocks, &downloaded, &bits));
  EXPECT_EQ(40u, blocks);
  EXPECT_EQ(2u, downloaded);
  EXPECT_TRUE(bits.Test(33));
  engine->PrepareRead(file, 33 * B, 4);
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 33 * B, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, remoteData.data() + 33 * B, sizeof out));
  EXPECT_EQ(calls, protocol->Reads().size());
  engine->Close(file);
}

TEST_F(FileURLLifecycle, ABadStateFileIsIgnored) {
  std::u16string url = Remote(u"bad.bin", 39 * B + 123);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  LcUString statePath = file->GetRemote()->statePath;
  engine->Close(file);
  LcUFileURLRemote good(39 * B + 123, true);
  good.MarkDownloaded(1);
  good.MarkDownloaded(39);
  ASSERT_TRUE(good.Save(statePath.Get()));
  std::vector<uint8_t> valid = ReadDisk(std::u16string(statePath.Get()));
  ASSERT_EQ(32u, valid.size());
  struct Case {
    const char* what;
    size_t size;
    size_t at;
    uint32_t word;
    uint32_t downloaded;
  } cases[] = {
      {"as saved", 32, 16, 2, 2},
      {"another total size", 32, 0, 123, 0},
      {"exactly 24 bytes", 24, 16, 2, 0},
      {"no bits", 32, 20, 0, 0},
      {"fewer bits than blocks", 32, 20, 39, 0},
      {"more bits than blocks", 32, 20, 41, 0},
      {"a missing word", 28, 16, 2, 0},
      {"a downloaded count that lies", 32, 16, 40, 2},
      {"a trickle position past the end", 32, 8, 0xFFFFFFFF, 2},
  };
  for (const Case& c : cases) {
    std::vector<uint8_t> bytes(valid.begin(), valid.begin() + c.size);
    if (c.at + 4 <= bytes.size()) PutWord(bytes, c.at, c.word);
    WriteState(statePath, bytes);
    LcUFileURLRemote probe(39 * B + 123, true);
    EXPECT_EQ(c.downloaded != 0, probe.Load(statePath.Get())) << c.what;
    file = OpenRead(url);
    ASSERT_NE(nullptr, file) << c.what;
    uint32_t downloaded = 99;
    ASSERT_TRUE(engine->GetDownloadState(url.c_str(), nullptr, &downloaded, nullptr));
    EXPECT_EQ(c.downloaded, downloaded) << c.what;
    EXPECT_LT(file->GetRemote()->tricklePosition, 40u) << c.what;
    engine->Close(file);
  }
}

TEST_F(FileURLLifecycle, TheTrickleFillsBlocksAfterTheIdleTime) {
  std::u16string url = Remote(u"trickle.bin", 3 * B);
  CountingHook hook;
  engine->AddCompletionHook(&hook);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  EXPECT_TRUE(engine->Poll());
  now += LcUFileURLImpl::eTRICKLE_IDLE_TIME - 1;
  EXPECT_TRUE(engine->Poll());
  EXPECT_TRUE(protocol->Reads().empty()) << "not before the idle time";
  now += 1;
  uint32_t downloaded = 0;
  ASSERT_TRUE(PollUntil([&] {
    engine->GetDownloadState(url.c_str(), nullptr, &downloaded, nullptr);
    return downloaded == 3;
  }));
  std::vector<RemoteTestProtocol::Call> reads = protocol->Reads();
  ASSERT_EQ(3u, reads.size()) << "one block a call";
  for (size_t i = 0; i < reads.size(); ++i) {
    EXPECT_EQ(int64_t(i * B), reads[i].offset);
    EXPECT_EQ(B, reads[i].size);
  }
  ASSERT_EQ(1u, hook.completed.size());
  EXPECT_EQ(file, hook.completed[0]);
  ASSERT_TRUE(PollUntil([&] { return !engine->Poll(); })) << "all written, nothing wanted";
  engine->RemoveCompletionHook(&hook);
  engine->Close(file);
  // What the trickle fetched is in the local copy.
  SetNetwork(false);
  file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  EXPECT_FALSE(engine->Poll()) << "nothing left for the trickle";
  std::vector<uint8_t> out(3 * B);
  engine->PrepareRead(file, 0, out.size());
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  EXPECT_EQ(remoteData, out);
  engine->Close(file);
}

TEST_F(FileURLLifecycle, StatusGoesOutAtMostOnceAPeriod) {
  CountingObserver observer;
  engine->SetObserver(&observer, nullptr);
  std::vector<uint8_t> data = Pattern(4 * B);
  std::u16string path = MakeFile(u"status.bin", data);
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  int32_t calls = observer.calls;
  std::vector<uint8_t> out(B);
  engine->PrepareRead(file, 0, 4 * B);
  for (int i = 0; i < 4; ++i) engine->Read(file, LcUFileURLImpl::eBLOCKING, uint64_t(i) * B, out.data(), B);
  EXPECT_LE(observer.calls, calls + 1) << "one slot, one call";
  now += LcUFileURLImpl::eSTATUS_PERIOD;
  ASSERT_TRUE(PollUntil([&] { return !engine->Poll(); }));
  EXPECT_GE(observer.calls, calls + 1);
  EXPECT_EQ(1, observer.last.readState);
  EXPECT_DOUBLE_EQ(1.0, observer.last.readRatio);
  engine->SetObserver(nullptr, nullptr);
  engine->Close(file);
}

TEST_F(FileURLLifecycle, AStreamedFileKeepsNoLocalCopy) {
  std::u16string url = Remote(u"streamed.bin", 2 * B + 9);
  protocol->SetUsesLocalCache(false);
  std::vector<uint8_t> out(2 * B + 9);
  for (int round = 1; round <= 2; ++round) {
    LcUFileURLFile* file = OpenRead(url);
    ASSERT_NE(nullptr, file);
    EXPECT_TRUE(file->GetRemote()->statePath.IsEmpty());
    EXPECT_FALSE(engine->Poll()) << "nothing for the trickle";
    engine->PrepareRead(file, 0, out.size());
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
    EXPECT_EQ(remoteData, out);
    EXPECT_FALSE(engine->Poll()) << "nothing to write";
    engine->Close(file);
    EXPECT_EQ(size_t(round), protocol->Reads().size()) << "fetched again each time";
  }
  EXPECT_FALSE(LcUSysFile::Exists((std::u16string(folder.Get()) + u"/LocalCache").c_str()));
}

TEST_F(FileURLLifecycle, DownloadedBlocksAreWrittenBehindToTheLocalCopy) {
  std::u16string url = Remote(u"behind.bin", 4 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::vector<uint8_t> out(4 * B);
  engine->PrepareRead(file, 0, out.size());
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  // The reader's block stays until it moves on.
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), 1));
  ASSERT_TRUE(PollUntil([&] { return !engine->Poll(); }));
  // Written while the file is still open.
  EXPECT_EQ(remoteData, ReadDisk(std::u16string(file->localPath.Get())));
  engine->Close(file);
}

TEST_F(FileURLLifecycle, ClosingAFileCancelsItsOwnQueuedDownloadsOnly) {
  std::u16string urlA = Remote(u"a.bin", 4 * B);
  std::u16string urlB = Remote(u"b.bin", 10 * B);
  std::vector<uint8_t> dataB = remoteData;
  LcUFileURLFile* a = OpenRead(urlA);
  LcUFileURLFile* b = OpenRead(urlB);
  ASSERT_NE(nullptr, a);
  ASSERT_NE(nullptr, b);
  // Four slow downloads of b fill the workers; behind them wait one of b
  // and two of a.
  protocol->SetLatency(std::chrono::milliseconds(300));
  for (uint64_t index : {0u, 2u, 4u, 6u, 8u}) engine->PrepareRead(b, index * B, 1);
  for (uint64_t index : {0u, 2u}) engine->PrepareRead(a, index * B, 1);
  engine->Close(a);
  EXPECT_EQ(nullptr, engine->FindOpen(urlA.c_str()));
  uint8_t out[16];
  ASSERT_EQ(0, engine->Read(b, LcUFileURLImpl::eBLOCKING, 8 * B, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, dataB.data() + 8 * B, sizeof out));
  for (const RemoteTestProtocol::Call& call : protocol->Reads())
    EXPECT_EQ(std::string::npos, call.path.find("a.bin")) << call.offset;
  EXPECT_EQ(5u, protocol->Reads().size());
  engine->Close(b);
  EXPECT_EQ(0, protocol->OpenRequests());
}
