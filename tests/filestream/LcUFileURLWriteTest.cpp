#include <cstring>

#include "FileURLTesting.h"
#include "filestream/LcUStreamFileURLHandle.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
class FileURLWrite : public FileURLTest {
protected:
  LcUFileURLFile* OpenLocal(const std::u16string& path, uint32_t flags) {
    return engine->Open(path.c_str(), nullptr, flags, LcUSysFileHandle::eDENY_NONE);
  }
};
}  // namespace

TEST_F(FileURLWrite, AppendsInThousandByteCallsGrowAnEmptyFile) {
  std::u16string path = MakeFile(u"append.bin", {});
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_WRITE | LcUFileURLFile::eOPEN_WRITE_APPEND);
  ASSERT_NE(nullptr, file);
  std::vector<uint8_t> data = Pattern(200000, 13);
  uint32_t accesses = engine->GetAccessCount();
  for (uint32_t at = 0; at < data.size(); at += 1000)
    ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, at, data.data() + at, 1000)) << at;
  EXPECT_EQ(accesses + 200, engine->GetAccessCount());
  EXPECT_EQ(200000u, file->GetSize());
  std::vector<uint8_t> back(data.size());
  EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 0, back.data(), uint32_t(back.size())));
  EXPECT_EQ(data, back);
  engine->Close(file);
  // Every block goes out whole, the short last one too.
  std::vector<uint8_t> disk = ReadDisk(path);
  ASSERT_EQ(4u * B, disk.size());
  EXPECT_EQ(0, std::memcmp(disk.data(), data.data(), data.size()));
  EXPECT_EQ(std::vector<uint8_t>(disk.size() - data.size()), std::vector<uint8_t>(disk.begin() + data.size(), disk.end()));
}

TEST_F(FileURLWrite, AppendingToAFileWithContentIsRefusedWithItsMessage) {
  std::u16string path = MakeFile(u"full.bin", Pattern(10));
  size_t before = LogText().size();
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_WRITE | LcUFileURLFile::eOPEN_WRITE_APPEND);
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(1u, Count(LogText().substr(before),
                      "LcUFileURL- eOPEN_WRITE_APPEND only implemented for initially empty files"));
  uint8_t more[5] = {1, 2, 3, 4, 5};
  engine->Write(file, LcUFileURLImpl::eBLOCKING, 10, more, sizeof more);
  EXPECT_EQ(10u, file->GetSize());
  engine->Close(file);
}

TEST_F(FileURLWrite, TheOrderTableGivesSlotsInTheOrderOfFirstWriting) {
  std::u16string path = MakeFile(u"ordered.bin", std::vector<uint8_t>(3 * B));
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_WRITE | LcUFileURLFile::eOPEN_ORDER_TABLE);
  ASSERT_NE(nullptr, file);
  std::vector<uint8_t> blocks[3] = {Pattern(B, 5), Pattern(B, 9), Pattern(B, 3)};
  for (uint32_t index : {2u, 0u, 1u})
    ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, uint64_t(index) * B, blocks[index].data(), B));
  // A second write keeps the block's slot.
  ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, 2 * B, blocks[2].data(), 100));
  engine->Close(file);
  std::vector<uint8_t> disk = ReadDisk(path);
  ASSERT_EQ(3u * B, disk.size());
  EXPECT_EQ(0, std::memcmp(disk.data(), blocks[2].data(), B));
  EXPECT_EQ(0, std::memcmp(disk.data() + B, blocks[0].data(), B));
  EXPECT_EQ(0, std::memcmp(disk.data() + 2 * B, blocks[1].data(), B));
}

TEST_F(FileURLWrite, WritesIntoAnExistingFileKeepItsOtherBytes) {
  std::vector<uint8_t> data = Pattern(2 * B);
  std::u16string path = MakeFile(u"patch.bin", data);
  // Without the write flag a block is read before it is changed.
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_READ | LcUFileURLFile::eOPEN_WRITE_APPEND);
  ASSERT_NE(nullptr, file);
  uint8_t patch[3] = {0xA1, 0xA2, 0xA3};
  ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, B + 7, patch, sizeof patch));
  engine->Close(file);
  std::memcpy(data.data() + B + 7, patch, sizeof patch);
  EXPECT_EQ(data, ReadDisk(path));
}

TEST_F(FileURLWrite, ALockedRangeLosesNoBufferEntry) {
  std::vector<uint8_t> data = Pattern(8 * B);
  std::u16string path = MakeFile(u"locked.bin", data);
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_READ);
  ASSERT_NE(nullptr, file);
  LcUSysError::SetTraceLevel(1);
  for (bool locked : {false, true}) {
    size_t before = LogText().size();
    engine->PrepareRead(file, 3 * B, 4 * B);
    if (locked) engine->Lock(file, 3 * B, 4 * B);
    for (uint32_t index : {6u, 3u, 5u}) {
      uint8_t out[16];
      ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, uint64_t(index) * B + 1, out, sizeof out));
      EXPECT_EQ(0, std::memcmp(out, data.data() + uint64_t(index) * B + 1, sizeof out));
    }
    std::string logged = LogText().substr(before);
    EXPECT_EQ(locked ? 0u : 1u, Count(logged, "LcUFileURL- Unprepared read 3")) << logged;
    EXPECT_EQ(locked ? 0u : 1u, Count(logged, "LcUFileURL- Skipped 3 blocks in buffer")) << logged;
    if (locked) {
      EXPECT_EQ(1u, Count(logged, "Lock: 3 to 6")) << logged;
      engine->Unlock(file);
      EXPECT_EQ(1u, Count(LogText(), "Unlock: 3 to 6"));
    }
  }
  engine->Close(file);
}

TEST_F(FileURLWrite, TheStreamSinkWritesAndReadsAStreamedFile) {
  std::u16string path = MakeFile(u"stream.bin", {});
  LcUFileURLFile* file = OpenLocal(path, LcUFileURLFile::eOPEN_WRITE | LcUFileURLFile::eOPEN_WRITE_APPEND);
  ASSERT_NE(nullptr, file);
  std::vector<int32_t> values(50000);
  for (size_t i = 0; i < values.size(); ++i) values[i] = int32_t(i * 2654435761u);
  {
    LcUStreamFileURLHandle sink(file);
    LcUStreamWriter writer(&sink);
    ASSERT_TRUE(writer.WriteBegin(true));
    writer.WriteInt32Array(values.data(), uint32_t(values.size()));
    ASSERT_TRUE(writer.WriteEnd());
  }
  uint64_t written = file->GetSize();
  EXPECT_GT(written, values.size() * 4);
  engine->Close(file);

  file = OpenLocal(path, LcUFileURLFile::eOPEN_READ);
  ASSERT_NE(nullptr, file);
  LcUStreamFileURLHandle sink(file, written);
  LcUStreamReader reader(&sink);
  ASSERT_TRUE(reader.ReadBegin(true));
  std::vector<int32_t> back(values.size());
  ASSERT_TRUE(reader.ReadInt32Array(back.data(), uint32_t(back.size())));
  EXPECT_TRUE(reader.ReadEnd(true));
  EXPECT_EQ(values, back);
  engine->Close(file);
}

TEST_F(FileURLWrite, TheStreamSinkPassesTheEnginesFailuresOn) {
  std::vector<uint8_t> data = Pattern(2 * B);
  MakeFile(u"away.bin", data);
  SetNetwork(false);
  LcUFileURLFile* file = OpenLocal(u"rtest://host/away.bin", LcUFileURLFile::eOPEN_READ);
  ASSERT_NE(nullptr, file);
  {
    LcUStreamFileURLHandle sink(file);
    LcUStreamReader reader(&sink);
    EXPECT_FALSE(reader.ReadBegin(true));
  }
  LcUStreamFileURLHandle sink(file);
  LcUStreamWriter writer(&sink);
  ASSERT_TRUE(writer.WriteBegin(false));
  writer.WriteNat8Array(data.data(), uint32_t(data.size()));
  EXPECT_FALSE(writer.WriteEnd());
  engine->Close(file);
}
