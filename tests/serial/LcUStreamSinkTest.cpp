#include <algorithm>
#include <string>
#include <vector>

#include "StreamTesting.h"
#include "serial/LcUChecksumSink.h"
#include "serial/LcUStreamBlockBuffer.h"
#include "serial/LcUStreamBlockData.h"
#include "serial/LcUStreamBlockSink.h"

#ifndef _WIN32
#include <zlib.h>
#endif

using namespace StreamTesting;

namespace {
class StreamSinks : public StreamTest {};

// Exactly these bytes through a sink's lending protocol, as a writer would.
bool PutRaw(LcUStreamSink& sink, const std::vector<uint8_t>& bytes) {
  if (!sink.WriteBegin(nullptr)) return false;
  for (size_t done = 0; done < bytes.size();) {
    uint8_t* block;
    uint32_t room;
    if (!sink.GetWriteBlock(&block, &room)) return false;
    size_t n = std::min<size_t>(room, bytes.size() - done);
    std::memcpy(block, bytes.data() + done, n);
    if (!sink.CommitWrite(uint32_t(n))) return false;
    done += n;
  }
  return sink.WriteEnd();
}

// Records each block it is handed.
class RecordingSink : public LcUStreamBlockSink {
public:
  RecordingSink(uint32_t size, uint32_t pad) : LcUStreamBlockSink(size, pad) {}
  bool WriteBlock(const uint8_t* data, uint32_t count) override {
    blocks.emplace_back(reinterpret_cast<const char*>(data), count);
    return true;
  }
  int32_t ReadBlock(uint8_t*, uint32_t* count) override {
    *count = 0;
    return 0;
  }
  std::vector<std::string> blocks;
};

TEST_F(StreamSinks, BlockSinkWritesWholeBlocksAndTheRest) {
  struct Row {
    uint32_t bytes;
    uint32_t pad;
    std::vector<uint32_t> blocks;
  } rows[] = {{65536, 0, {65536}}, {10, 1, {65536}}, {10, 0, {10}}, {65537, 0, {65536, 1}}, {0, 1, {}}};
  for (const Row& row : rows) {
    RecordingSink sink(65536, row.pad);
    ASSERT_TRUE(PutRaw(sink, std::vector<uint8_t>(row.bytes, 0x5A)));
    std::vector<uint32_t> sizes;
    for (const std::string& b : sink.blocks) sizes.push_back(uint32_t(b.size()));
    EXPECT_EQ(row.blocks, sizes) << row.bytes << " pad " << row.pad;
    // The block is gone: a second end has nothing left to write.
    EXPECT_TRUE(sink.WriteEnd());
    EXPECT_EQ(row.blocks.size(), sink.blocks.size());
    if (row.pad && row.bytes == 10) {
      EXPECT_EQ(std::string(65536 - 10, '\0'), sink.blocks[0].substr(10));
    }
  }
}

TEST_F(StreamSinks, BufferBorrowsAlignedDataAndCopiesTheRest) {
  alignas(8) char data[16] = "abcdefghijklmno";
  LcUStreamBuffer buffer;
  ASSERT_TRUE(buffer.SetData(data, 16));
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(data), buffer.GetData());
  EXPECT_EQ(nullptr, buffer.GetOwnedBlock());
  ASSERT_TRUE(buffer.SetData(data + 1, 3));
  EXPECT_NE(reinterpret_cast<const uint8_t*>(data + 1), buffer.GetData());
  EXPECT_EQ(0u, reinterpret_cast<uintptr_t>(buffer.GetData()) % 8);
  EXPECT_EQ("bcd", Bytes(buffer));
  EXPECT_NE(nullptr, buffer.GetOwnedBlock());
}

TEST_F(StreamSinks, BufferWithNothingWrittenFreesItsBlock) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  ASSERT_TRUE(writer.WriteBegin(false));
  EXPECT_NE(nullptr, buffer.GetOwnedBlock());
  ASSERT_TRUE(writer.WriteEnd());
  EXPECT_EQ(nullptr, buffer.GetOwnedBlock());
  EXPECT_EQ(0u, buffer.GetSize());
}

TEST_F(StreamSinks, BufferGrowsPastItsFirstBlock) {
  std::vector<int32_t> values(100000);
  for (size_t i = 0; i < values.size(); ++i) values[i] = int32_t(i * 2654435761u);
  std::string bytes = Written({0, 1, 0}, [&](LcUStreamWriter& w) { w.WriteInt32Array(values.data(), uint32_t(values.size())); }, false);
  ASSERT_EQ(400000u, bytes.size());
  EXPECT_EQ(0, std::memcmp(bytes.data(), values.data(), bytes.size()));
}

TEST_F(StreamSinks, ChecksumSinkRefusesReading) {
  LcUChecksumSink sink;
  EXPECT_FALSE(sink.ReadBegin(nullptr));
  uint32_t count = 0;
  EXPECT_EQ(2, sink.ReadBlock(nullptr, &count));
  EXPECT_FALSE(sink.ReadEnd());
  LcUStreamReader reader(&sink);
  EXPECT_FALSE(reader.ReadBegin(true));
  EXPECT_EQ(8, reader.GetError());
}

#ifndef _WIN32
TEST_F(StreamSinks, ChecksumSinkGivesAdlerOfExactlyTheBytesWritten) {
  for (uint32_t size : {0u, 5552u, 5553u, 200000u}) {
    std::vector<uint8_t> bytes(size);
    for (uint32_t i = 0; i < size; ++i) bytes[i] = uint8_t(i * 131 + (i >> 8));
    LcUChecksumSink sink;
    LcUStreamWriter writer(&sink);
    ASSERT_TRUE(writer.WriteBegin(true));
    uint32_t half = size / 2;
    writer.WriteNat8Array(bytes.data(), half);
    writer.Flush();
    writer.WriteNat8Array(bytes.data() + half, size - half);
    ASSERT_TRUE(writer.WriteEnd());

    LcUStreamBuffer buffer;
    LcUStreamWriter same(&buffer);
    ASSERT_TRUE(same.WriteBegin(true));
    same.WriteNat8Array(bytes.data(), half);
    same.Flush();
    same.WriteNat8Array(bytes.data() + half, size - half);
    ASSERT_TRUE(same.WriteEnd());
    uLong expected = adler32(adler32(0, nullptr, 0), buffer.GetData(), uInt(buffer.GetSize()));
    EXPECT_EQ(uint32_t(expected), sink.GetResult()) << size;
  }
}
#endif

TEST_F(StreamSinks, BlockDataKeepsChunksAndTail) {
  for (uint32_t size : {0u, 10u, 4064u, 4065u, 3 * 4064u + 7u}) {
    std::vector<uint8_t> bytes(size);
    for (uint32_t i = 0; i < size; ++i) bytes[i] = uint8_t(i * 7);
    LcUStreamBlockBuffer source;
    ASSERT_TRUE(PutRaw(source, bytes));
    ASSERT_EQ(size, source.GetSize());

    LcUStreamBlockData data;
    data.TakeFrom(source);
    EXPECT_EQ(size, data.GetSize());
    EXPECT_EQ(0u, source.GetSize());

    for (Choices c : {Choices{0, 1, 1}, Choices{1, 1, 0}}) {
      std::string stream = Written(c, [&](LcUStreamWriter& w) { data.Write(w); });
      LcUStreamBuffer buffer;
      LcUStreamReader reader(&buffer);
      ASSERT_TRUE(BeginReading(buffer, reader, stream));
      LcUStreamBlockData read;
      EXPECT_TRUE(read.Read(reader));
      EXPECT_TRUE(reader.ReadEnd(true));
      EXPECT_TRUE(read.Equals(data)) << size;
    }

    LcUStreamBlockData copy;
    ASSERT_TRUE(copy.CopyFrom(data));
    EXPECT_TRUE(copy.Equals(data));
    LcUStreamBlockBuffer target;
    ASSERT_TRUE(copy.GiveTo(target));
    EXPECT_EQ(0u, copy.GetSize());
    std::vector<uint8_t> back(size);
    LcUStreamReader reader(&target);
    ASSERT_TRUE(reader.ReadBegin(false));
    reader.ReadNat8Array(back.data(), size);
    EXPECT_EQ(bytes, back) << size;
  }
}

TEST_F(StreamSinks, BlockDataRefusesALongTail) {
  std::string stream = Written({0, 1, 0}, [](LcUStreamWriter& w) {
    w.WriteInt32(0);
    w.WriteInt32(4064);
  });
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, stream));
  LcUStreamBlockData read;
  EXPECT_FALSE(read.Read(reader));
  EXPECT_EQ(16, reader.GetError());
}
}  // namespace
