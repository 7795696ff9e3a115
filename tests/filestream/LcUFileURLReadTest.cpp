#include <algorithm>
#include <cstring>

#include "FileURLTesting.h"
#include "filestream/LcUFileURLRemote.h"

namespace {
class FileURLRead : public FileURLTest {};
}  // namespace

TEST_F(FileURLRead, ResultsAtAndPastTheEnd) {
  for (size_t size : {size_t(0), size_t(3 * B + 100)}) {
    std::vector<uint8_t> data = Pattern(size);
    std::u16string path = MakeFile(u"local.bin", data);
    LcUFileURLFile* file = OpenRead(path);
    ASSERT_NE(nullptr, file);
    ASSERT_EQ(size, file->GetSize());
    struct Case {
      uint64_t offset;
      uint32_t size;
      int32_t result;
    } cases[] = {
        {0, uint32_t(size), 0},               // ends exactly at the end
        {size + 5, 0, 0},                      // size 0 even past the end
        {size, 1, 2},                          // one byte further
        {size ? size - 10 : 0, 11, 2},
        {size ? size - 10 : 0, size ? 10u : 0u, 0},
        {size ? B - 5 : 0, size ? 10u : 0u, 0},  // across a block boundary
    };
    for (const Case& c : cases) {
      std::vector<uint8_t> out(c.size + 1, 0xEE);
      EXPECT_EQ(c.result, engine->Read(file, LcUFileURLImpl::eBLOCKING, c.offset, out.data(), c.size))
          << size << " at " << c.offset << " for " << c.size;
      if (c.result == 0 && c.size) {
        EXPECT_EQ(0, std::memcmp(out.data(), data.data() + c.offset, c.size));
      }
      if (c.result == 2) {
        EXPECT_EQ(0xEE, out[0]) << "nothing changed";
      }
    }
    engine->Close(file);
  }
}

TEST_F(FileURLRead, AReadWithoutPrepareLogsOnceAndWorks) {
  std::vector<uint8_t> data = Pattern(4 * B);
  std::u16string path = MakeFile(u"local.bin", data);
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  LcUSysError::SetTraceLevel(1);
  size_t before = LogText().size();
  std::vector<uint8_t> out(3 * B);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 100, out.data(), uint32_t(out.size())));
  EXPECT_EQ(0, std::memcmp(out.data(), data.data() + 100, out.size()));
  std::string logged = LogText().substr(before);
  EXPECT_EQ(1u, Count(logged, "LcUFileURL- Unprepared read 0")) << logged;
  EXPECT_EQ(1u, Count(logged, "LcUFileURL- Unprepared read")) << logged;
  EXPECT_EQ(0u, Count(logged, "Skipped")) << "one block behind is no skip";
  engine->Close(file);
}

TEST_F(FileURLRead, TwoPreparesMeetingInOneBlockFetchItOnce) {
  std::u16string url = Remote(u"meet.bin", 3 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  engine->PrepareRead(file, 0, B + 10);
  engine->PrepareRead(file, B + 10, B);
  std::vector<uint8_t> out(2 * B + 10);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  EXPECT_EQ(0, std::memcmp(out.data(), remoteData.data(), out.size()));
  int32_t fetched[3] = {};
  for (const RemoteTestProtocol::Call& call : protocol->Reads())
    for (uint64_t at = uint64_t(call.offset); at < uint64_t(call.offset) + call.size; at += B) ++fetched[at / B];
  EXPECT_EQ(1, fetched[0]);
  EXPECT_EQ(1, fetched[1]);
  EXPECT_EQ(1, fetched[2]);
  engine->Close(file);
}

TEST_F(FileURLRead, NeighboursGoAsOneRequestCutAtTheEndAndCappedAtSixteen) {
  uint64_t size = 18 * B + 1000;
  std::u16string url = Remote(u"long.bin", size);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  engine->PrepareRead(file, 0, size);
  std::vector<uint8_t> out(size);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(size)));
  EXPECT_EQ(remoteData, out);
  std::vector<RemoteTestProtocol::Call> reads = protocol->Reads();
  ASSERT_EQ(2u, reads.size());
  // Two download threads: either request may reach the server first.
  std::sort(reads.begin(), reads.end(), [](const auto& a, const auto& b) { return a.offset < b.offset; });
  EXPECT_EQ(0, reads[0].offset);
  EXPECT_EQ(16 * B, reads[0].size);
  EXPECT_EQ(int64_t(16 * B), reads[1].offset);
  EXPECT_EQ(2 * B + 1000, reads[1].size);
  EXPECT_EQ(0, protocol->OpenRequests());
  engine->Close(file);
}

TEST_F(FileURLRead, ThreeAttemptsThenDownloadErrorAndPrepareStartsAgain) {
  std::u16string url = Remote(u"fail.bin", 2 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  protocol->FailReads(0, -1);
  uint8_t out[100];
  engine->PrepareRead(file, 0, 1);
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out));
  EXPECT_EQ(3, protocol->CountReads(0));
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out)) << "no new attempt";
  EXPECT_EQ(3, protocol->CountReads(0));
  // Block 1 behind it, so that block 0 is prepared again rather than met.
  engine->PrepareRead(file, B, 1);
  engine->PrepareRead(file, 0, 1);
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out));
  EXPECT_EQ(6, protocol->CountReads(0));
  protocol->FailReads(0, 0);
  engine->PrepareRead(file, B, 1);
  engine->PrepareRead(file, 0, 1);
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, remoteData.data(), sizeof out));
  EXPECT_EQ(7, protocol->CountReads(0));
  // Block 1 travels alone or with block 0 in one combined request, as the
  // scheduler happens to meet the two prepares.
  EXPECT_LE(protocol->CountReads(B), 1);
  engine->Close(file);
  EXPECT_EQ(0, protocol->OpenRequests());
}

TEST_F(FileURLRead, ACombinedDownloadCountsItsFailureOnTheFirstBlockOnly) {
  std::u16string url = Remote(u"multi.bin", 10 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  LcUSysError::SetTraceLevel(1);
  size_t before = LogText().size();
  protocol->FailReads(5 * B, 2);
  engine->PrepareRead(file, 5 * B, 4 * B);
  std::vector<uint8_t> out(4 * B);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 5 * B, out.data(), uint32_t(out.size())));
  EXPECT_EQ(0, std::memcmp(out.data(), remoteData.data() + 5 * B, out.size()));
  std::vector<RemoteTestProtocol::Call> reads = protocol->Reads();
  ASSERT_EQ(3u, reads.size());
  for (const RemoteTestProtocol::Call& call : reads) {
    EXPECT_EQ(int64_t(5 * B), call.offset);
    EXPECT_EQ(4 * B, call.size);
  }
  std::string logged = LogText().substr(before);
  EXPECT_EQ(1u, Count(logged, "LcUFileURL-Multiple block download ACCEPTED blocks=5-8"));
  EXPECT_EQ(1u, Count(logged, "LcUFileURL- block[5] download attempt[0] ATTEMPT_FAILED(1)"));
  EXPECT_EQ(1u, Count(logged, "LcUFileURL- block[5] download attempt[1] ATTEMPT_FAILED(1)"));
  EXPECT_EQ(0u, Count(logged, "block[6] download attempt"));
  engine->Close(file);
}

TEST_F(FileURLRead, ShortReadsFailLikeErrors) {
  std::u16string url = Remote(u"short.bin", B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  protocol->ShortenReads(true);
  uint8_t out[10];
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out));
  EXPECT_EQ(3, protocol->CountReads(0));
  engine->Close(file);
}

TEST_F(FileURLRead, NonBlockingReadsWouldBlockWhileDownloadingAndSucceedAfterPolling) {
  std::u16string url = Remote(u"wait.bin", 4 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  protocol->Hold(true);
  engine->PrepareRead(file, 0, 4 * B);
  std::vector<uint8_t> out(4 * B);
  EXPECT_EQ(1, engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, 0, out.data(), 100));
  EXPECT_TRUE(engine->IsPending());
  EXPECT_EQ(1, engine->IsReadReady(file, 3 * B, 10));
  protocol->Hold(false);
  ASSERT_TRUE(PollUntil([&] { return engine->IsReadReady(file, 0, 4 * B) == 0; }));
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, 0, out.data(), uint32_t(out.size())));
  EXPECT_EQ(remoteData, out);
  engine->Close(file);
}

TEST_F(FileURLRead, WithTheNetworkDownMissingBlocksAreUnavailableAndLocalOnesRead) {
  std::u16string url = Remote(u"net.bin", 4 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::vector<uint8_t> out(2 * B);
  engine->PrepareRead(file, 0, 2 * B);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  engine->Close(file);
  size_t calls = protocol->Reads().size();

  SetNetwork(false);
  file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  engine->PrepareRead(file, 0, 4 * B);
  std::fill(out.begin(), out.end(), 0);
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out.data(), uint32_t(out.size())));
  EXPECT_EQ(0, std::memcmp(out.data(), remoteData.data(), out.size()));
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eNON_BLOCKING, 3 * B, out.data(), 10));
  EXPECT_EQ(3, engine->Read(file, LcUFileURLImpl::eBLOCKING, 2 * B, out.data(), 10));
  EXPECT_EQ(calls, protocol->Reads().size()) << "no attempt at all";
  engine->Close(file);
}

TEST_F(FileURLRead, AFailedLocalReadGivesTwo) {
  std::u16string url = Remote(u"broken.bin", 2 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  LcUString statePath = file->GetRemote()->statePath;
  std::u16string localPath(file->localPath.Get());
  engine->Close(file);
  // Block 0 claimed on disk while the local copy is empty.
  std::fclose(std::fopen(Narrow(localPath).c_str(), "wb"));
  LcUFileURLRemote claim(2 * B, true);
  claim.MarkDownloaded(0);
  ASSERT_TRUE(claim.Save(statePath.Get()));
  size_t before = LogText().size();
  file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  engine->PrepareRead(file, 0, 2 * B);
  uint8_t out[10];
  EXPECT_EQ(2, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, out, sizeof out));
  EXPECT_EQ(2, engine->IsReadReady(file, 0, 10));
  EXPECT_EQ(1u, Count(LogText().substr(before), "LcUFileURL- ReadFile error")) << "logged without the trace";
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, B, out, sizeof out));
  engine->Close(file);
}

TEST_F(FileURLRead, UnderMemoryPressureRequestsWaitAndAReaderSkipsThem) {
  std::vector<uint8_t> data = Pattern(8 * B);
  std::u16string path = MakeFile(u"pressed.bin", data);
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  engine->SetMemoryTest([] { return true; });
  engine->PrepareRead(file, 0, 8 * B);
  size_t before = LogText().size();
  uint8_t out[16];
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 6 * B + 1, out, sizeof out));
  EXPECT_EQ(0, std::memcmp(out, data.data() + 6 * B + 1, sizeof out));
  std::string logged = LogText().substr(before);
  EXPECT_EQ(1u, Count(logged, "LcUFileURL- Skipped 2 blocks in requests")) << "logged without the trace";
  EXPECT_EQ(0u, Count(logged, "Unprepared read"));
  EXPECT_EQ(LcUFileURLImpl::eMIN_BUFFER_TARGET, engine->GetBufferTarget());
  engine->SetMemoryTest(nullptr);
  engine->Close(file);
}
