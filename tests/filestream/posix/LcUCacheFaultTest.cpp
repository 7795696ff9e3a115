#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstring>

#include "posix/CacheProcessTest.h"
#include "filestream/LcUFileURLRemote.h"

namespace {
class CacheFault : public CacheProcessTest {
protected:
  // Reads blocks from `first` on, one at a time, telling the pipe of each;
  // with `stay` it then waits, the file open, to be killed.
  int ReadBlocks(const std::u16string& url, uint32_t first, uint32_t count, int tell, bool stay = false) {
    LcUFileURLFile* file = OpenRead(url);
    if (!file) return 10;
    std::vector<uint8_t> out(B);
    for (uint32_t i = first; i < first + count; ++i) {
      if (engine->Read(file, LcUFileURLImpl::eBLOCKING, uint64_t(i) * B, out.data(), B) != 0) return 11;
      if (std::memcmp(out.data(), remoteData.data() + uint64_t(i) * B, B) != 0) return 12;
      if (tell >= 0 && write(tell, "b", 1) != 1) return 13;
    }
    while (stay) pause();
    engine->Close(file);
    return 0;
  }
};
}  // namespace

TEST_F(CacheFault, AProcessKilledWhileStreamingLeavesNothingThatReadsWrong) {
  std::u16string url = Remote(u"killed.bin", 24 * B);
  // An earlier run left the first four blocks.
  Stream(url, 0, 4 * B);
  std::u16string entry = EntryOf(url);
  protocol->SetLatency(std::chrono::milliseconds(20));
  int status = RunChild(
      [&](int tell) {
        return ReadBlocks(url, 4, 20, tell, true);
      },
      [&](pid_t pid, int from) {
        EXPECT_EQ(6, Await(from, 6));
        kill(pid, SIGKILL);
      });
  ASSERT_TRUE(WIFSIGNALED(status));
  protocol->SetLatency(std::chrono::milliseconds(0));
  // Its lock stays behind, so this run streams past the entry.
  EXPECT_TRUE(Exists(entry + u"/data.lock"));
  Stream(url, 0, 24 * B);
  // Once the lock is cleared, the entry serves again, from what its state
  // file tells and the location for the rest.
  LcUSysFile::Delete((entry + u"/data.lock").c_str(), true);
  size_t before = protocol->Reads().size();
  Stream(url, 0, 24 * B);
  for (size_t i = before; i < protocol->Reads().size(); ++i) EXPECT_GE(protocol->Reads()[i].offset, int64_t(4 * B));
  EXPECT_EQ(0u, Stream(url, 0, 24 * B));
}

TEST_F(CacheFault, ADiskThatFillsGivesCleanFailuresAndNoBlockClaimedThatIsNotOnDisk) {
  std::u16string other = Remote(u"other.bin", 8 * B);
  std::u16string url = Remote(u"full.bin", 8 * B);
  LcUFileURLFile* file = OpenRead(url);
  ASSERT_NE(nullptr, file);
  std::u16string data(file->localPath.Get());
  LcUString statePath = file->GetRemote()->statePath;
  engine->Close(file);
  // Room for two blocks only: the rest of each write fails.
  int status = RunChild([&](int) {
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {2 * B, 2 * B};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 20;
    int read = ReadBlocks(url, 0, 8, -1);
    // No room for a new entry, nor for a temporary file: the open fails.
    return read != 0 ? read : OpenRead(other) == nullptr ? 0 : 21;
  });
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(0, WEXITSTATUS(status));
  LcUFileURLRemote state(8 * B, true);
  ASSERT_TRUE(state.Load(statePath.Get()));
  EXPECT_EQ(2u, state.downloadedCount);
  std::vector<uint8_t> disk = ReadDisk(data);
  for (uint32_t i = 0; i < 8; ++i)
    if (state.IsLocal(i)) {
      EXPECT_EQ(0, std::memcmp(disk.data() + i * B, remoteData.data() + i * B, B)) << i;
    }
  size_t before = protocol->Reads().size();
  EXPECT_GT(Stream(url, 0, 8 * B), 0u);
  for (size_t i = before; i < protocol->Reads().size(); ++i)
    EXPECT_GE(protocol->Reads()[i].offset, int64_t(2 * B)) << "the missing blocks only";
  EXPECT_EQ(0u, Stream(url, 0, 8 * B));
  Stream(other, 0, 8 * B);
}
