#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "StreamTesting.h"
#include "environment/LcUSysFile.h"
#include "serial/LcUStreamBlockBuffer.h"
#include "serial/LcUStreamFile.h"
#include "serial/LcUStreamFileHandle.h"

using namespace StreamTesting;

namespace {
// Values that cross several 64 KiB blocks, with a flush in the middle.
struct Sample {
  std::vector<uint8_t> bytes;
  std::vector<int16_t> shorts;
  std::vector<uint16_t> words;
  std::vector<int32_t> ints;
  std::vector<uint32_t> naturals;
  std::vector<uint64_t> longs;
  std::vector<float> singles;
  std::vector<double> doubles;
  std::vector<double> floats;
  std::string text;

  Sample() {
    for (int i = 0; i < 70001; ++i) bytes.push_back(uint8_t(i * 7));
    for (int i = 0; i < 301; ++i) shorts.push_back(int16_t(i * 211 - 32768));
    for (int i = 0; i < 33; ++i) words.push_back(uint16_t(i * 2003));
    for (int i = 0; i < 20000; ++i) ints.push_back(i * 104729 - 1000000000);
    for (int i = 0; i < 17; ++i) naturals.push_back(0xFFFFFFFFu - uint32_t(i) * 0x1234567u);
    for (int i = 0; i < 9; ++i) longs.push_back(0xFEDCBA9876543210ull >> i);
    singles = {0.0f, -0.0f, 1.5f, -3.25e-20f, std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()};
    doubles = {0.1, -2.0 / 3.0, 1e300, -4.9e-324, std::numeric_limits<double>::infinity(), 123456789.123456789};
    floats = {0.1, 1.0 / 3.0, -7.0, 1e-30};
    text = "quote \" backslash \\ and \xc3\xa9";
  }
};

void WriteSample(LcUStreamWriter& w, const Sample& s) {
  w.WriteNat8(0xAB);
  w.WriteInt32(-5);
  w.WriteNat8Array(s.bytes.data(), uint32_t(s.bytes.size()));
  w.WriteInt16(-12345);
  w.WriteDouble(s.doubles[1]);
  w.WriteInt16Array(s.shorts.data(), uint32_t(s.shorts.size()));
  w.WriteNat16(0xBEEF);
  w.WriteNat16Array(s.words.data(), uint32_t(s.words.size()));
  w.Flush();
  w.WriteInt32Array(s.ints.data(), uint32_t(s.ints.size()));
  w.WriteNat32(0xDEADBEEF);
  w.WriteNat32Array(s.naturals.data(), uint32_t(s.naturals.size()));
  w.WriteNat64(0x0123456789ABCDEFull);
  w.WriteNat64Array(s.longs.data(), uint32_t(s.longs.size()));
  w.WriteSingle(-1.25f);
  w.WriteSingleArray(s.singles.data(), uint32_t(s.singles.size()));
  w.WriteDoubleArray(s.doubles.data(), uint32_t(s.doubles.size()));
  w.WriteFloat(0.1);
  w.WriteFloatArray(s.floats.data(), uint32_t(s.floats.size()));
  w.WriteBoolean(true);
  w.WriteEnum(7);
  w.WriteBitfield(0x80000001u);
  w.WriteInt32Array(nullptr, 0);
  w.WriteInt32Array(s.ints.data(), 1);
  w.WriteString(s.text.c_str());
  w.WriteString("");
  w.WriteString(nullptr);
  w.WriteWideString(u"wide \u00e9\u4e2d \U0001F600");
  w.WriteWideString(nullptr);
  w.WriteBits(5, 3);
  w.WriteBits(0x12345, 20);
  w.WriteBits(0xFFFFFFFFu, 32);
  w.FlushBits();
}

// Single precision narrows Floats; ascii keeps the digits it was given.
double Narrowed(double value, const LcUStream& s) {
  return s.doublePrecision ? value : double(float(value));
}

void ExpectSample(LcUStreamReader& r, const Sample& s) {
  EXPECT_EQ(0xAB, r.ReadNat8());
  EXPECT_EQ(-5, r.ReadInt32());
  std::vector<uint8_t> bytes(s.bytes.size());
  EXPECT_TRUE(r.ReadNat8Array(bytes.data(), uint32_t(bytes.size())));
  EXPECT_EQ(s.bytes, bytes);
  EXPECT_EQ(-12345, r.ReadInt16());
  EXPECT_EQ(s.doubles[1], r.ReadDouble());
  std::vector<int16_t> shorts(s.shorts.size());
  r.ReadInt16Array(shorts.data(), uint32_t(shorts.size()));
  EXPECT_EQ(s.shorts, shorts);
  EXPECT_EQ(0xBEEF, r.ReadNat16());
  std::vector<uint16_t> words(s.words.size());
  r.ReadNat16Array(words.data(), uint32_t(words.size()));
  EXPECT_EQ(s.words, words);
  r.Sync();
  std::vector<int32_t> ints(s.ints.size());
  r.ReadInt32Array(ints.data(), uint32_t(ints.size()));
  EXPECT_EQ(s.ints, ints);
  EXPECT_EQ(0xDEADBEEFu, r.ReadNat32());
  std::vector<uint32_t> naturals(s.naturals.size());
  r.ReadNat32Array(naturals.data(), uint32_t(naturals.size()));
  EXPECT_EQ(s.naturals, naturals);
  EXPECT_EQ(0x0123456789ABCDEFull, r.ReadNat64());
  std::vector<uint64_t> longs(s.longs.size());
  r.ReadNat64Array(longs.data(), uint32_t(longs.size()));
  EXPECT_EQ(s.longs, longs);
  EXPECT_EQ(-1.25f, r.ReadSingle());
  std::vector<float> singles(s.singles.size());
  r.ReadSingleArray(singles.data(), uint32_t(singles.size()));
  for (size_t i = 0; i < singles.size(); ++i) {
    EXPECT_EQ(s.singles[i], singles[i]) << i;
    EXPECT_EQ(std::signbit(s.singles[i]), std::signbit(singles[i])) << i;
  }
  std::vector<double> doubles(s.doubles.size());
  r.ReadDoubleArray(doubles.data(), uint32_t(doubles.size()));
  EXPECT_EQ(s.doubles, doubles);
  EXPECT_EQ(Narrowed(0.1, r), r.ReadFloat());
  std::vector<double> floats(s.floats.size());
  r.ReadFloatArray(floats.data(), uint32_t(floats.size()));
  for (size_t i = 0; i < floats.size(); ++i) EXPECT_EQ(Narrowed(s.floats[i], r), floats[i]) << i;
  EXPECT_TRUE(r.ReadBoolean());
  EXPECT_EQ(7u, r.ReadEnum());
  EXPECT_EQ(0x80000001u, r.ReadBitfield());
  EXPECT_TRUE(r.ReadInt32Array(nullptr, 0));
  int32_t one = 0;
  r.ReadInt32Array(&one, 1);
  EXPECT_EQ(s.ints[0], one);
  LcUStringA text;
  EXPECT_TRUE(r.ReadString(text));
  EXPECT_EQ(s.text, text.Get());
  r.ReadString(text);
  ASSERT_FALSE(text.IsNull());
  EXPECT_STREQ("", text.Get());
  r.ReadString(text);
  EXPECT_TRUE(text.IsNull());
  LcUString wide;
  r.ReadWideString(wide);
  EXPECT_TRUE(LcUString::Equal(u"wide \u00e9\u4e2d \U0001F600", wide.Get()));
  r.ReadWideString(wide);
  EXPECT_TRUE(wide.IsNull());
  EXPECT_EQ(5u, r.ReadBits(3));
  EXPECT_EQ(0x12345u, r.ReadBits(20));
  EXPECT_EQ(0xFFFFFFFFu, r.ReadBits(32));
  EXPECT_EQ(2u, r.FlushBits());
}

enum SinkKind { eBUFFER, eBLOCK_BUFFER, eFILE, eFILE_HANDLE };

struct Case {
  Choices choices;
  SinkKind sink;
};

std::string Name(const Case& c) {
  static const char* const sinks[] = {"Buffer", "BlockBuffer", "File", "FileHandle"};
  return std::string(c.choices.ascii ? "Ascii" : "Binary") + (c.choices.doublePrecision ? "Double" : "Single") +
         (c.choices.debug ? "Debug" : "Release") + sinks[c.sink];
}

class StreamRoundTrip : public ::testing::TestWithParam<Case> {
protected:
  static void SetUpTestSuite() { LcUStream::Initialize(); }
  static void TearDownTestSuite() { LcUStream::Terminate(); }
};

TEST_P(StreamRoundTrip, EveryValueComesBackToTheBit) {
  const Case& c = GetParam();
  Sample sample;
  LcUString folder, path;
  ASSERT_TRUE(LcUSysFile::MakeTempFolder(folder));
  LcUSysFile::Join(folder.Get(), u"values.stream", path);

  LcUStreamBuffer buffer;
  LcUStreamBlockBuffer blocks;
  LcUStreamFile file(path.Get());
  FILE* handle = nullptr;
  LcUStreamSink* sinks[] = {&buffer, &blocks, &file, nullptr};
  LcUStreamSink* sink = sinks[c.sink];
  LcUStreamFileHandle* handleSink = nullptr;
  if (c.sink == eFILE_HANDLE) {
    LcUStringA narrow;
    LcUString::UTF16ToUTF8(path.Get(), narrow, true);
    handle = std::fopen(narrow.Get(), "w+b");
    ASSERT_NE(nullptr, handle);
    handleSink = new LcUStreamFileHandle(handle);
    sink = handleSink;
  }

  LcUStreamWriter writer(sink);
  Configure(writer, c.choices);
  ASSERT_TRUE(writer.WriteBegin(true));
  WriteSample(writer, sample);
  ASSERT_TRUE(writer.WriteEnd()) << writer.GetError();
  if (handle) std::rewind(handle);

  LcUStreamReader reader(sink);
  ASSERT_TRUE(reader.ReadBegin(true, false)) << reader.GetError();
  EXPECT_EQ(c.choices.ascii, reader.ascii);
  EXPECT_EQ(c.choices.doublePrecision, reader.doublePrecision);
  EXPECT_EQ(c.choices.debug, reader.debug);
  ExpectSample(reader, sample);
  EXPECT_TRUE(reader.ReadEnd(true)) << reader.GetError();
  EXPECT_EQ(0, reader.GetError());

  delete handleSink;
  if (handle) std::fclose(handle);
  LcUSysFile::Remove(folder.Get(), true, true);
}

std::vector<Case> AllCases() {
  std::vector<Case> cases;
  for (int ascii = 0; ascii < 2; ++ascii)
    for (int precision = 0; precision < 2; ++precision)
      for (int debug = 0; debug < 2; ++debug)
        for (SinkKind sink : {eBUFFER, eBLOCK_BUFFER, eFILE, eFILE_HANDLE}) cases.push_back({{ascii, precision, debug}, sink});
  return cases;
}

INSTANTIATE_TEST_SUITE_P(AllForms, StreamRoundTrip, ::testing::ValuesIn(AllCases()),
                         [](const ::testing::TestParamInfo<Case>& info) { return Name(info.param); });
}  // namespace
