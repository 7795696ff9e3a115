#include <string>

#include "StreamTesting.h"

using namespace StreamTesting;

namespace {
class StreamErrors : public StreamTest {};

const std::string kBinaryHeader("#LcUStream-V1.1 binary double release utf8 linull\n\0\0\0\0\0\0", 56);
const std::string kAsciiHeader("#LcUStream-V1.1 ascii double release utf8 linull\n");
const std::string kAsciiDebugHeader("#LcUStream-V1.1 ascii double debug utf8 linull\n  Sync\n");
const std::string kBinaryDebugHeader("#LcUStream-V1.1 binary double debug utf8 linull\n\x01\0\0\0\0\0\0\0", 56);

struct Row {
  const char* what;
  std::string bytes;
  void (*read)(LcUStreamReader&);
  int32_t code;
  const char* message;  // part of what the log says, or null
};

void ReadNat8Int32(LcUStreamReader& r) {
  r.ReadNat8();
  r.ReadInt32();
}
void ReadInt32(LcUStreamReader& r) {
  r.ReadInt32();
}
void ReadString(LcUStreamReader& r) {
  LcUStringA text;
  r.ReadString(text);
}
void ReadDoubles(LcUStreamReader& r) {
  double v[2];
  r.ReadDoubleArray(v, 2);
}
void ReadNothing(LcUStreamReader&) {}

TEST_F(StreamErrors, ReadingIsStrict) {
  const Row rows[] = {
      {"non-zero pad byte", kBinaryHeader + std::string("\x01\0\x01\0\x02\0\0\0", 8), ReadNat8Int32, 15,
       "Malformed data"},
      {"binary token mismatch", kBinaryDebugHeader + std::string("\x06\0\0\0\x02\0\0\0", 8), ReadInt32, 16,
       "Read \"6\", expected \"5\""},
      {"ascii token mismatch", kAsciiDebugHeader + "  Nat32\n 5\n", ReadInt32, 16,
       "Read \"N\", expected \"Int32\" at line 3"},
      {"token that only starts like the one expected", kAsciiDebugHeader + "  Int32Array 1\n 5\n", ReadInt32, 16,
       "Read \"Int32A\", expected \"Int32\""},
      {"ascii word that does not scan", kAsciiHeader + "\n\n  x12\n", ReadInt32, 16,
       "Read \"x12\", expected \"LI_U_GLUE_2(LtInt32,!)\" at line 4"},
      {"ascii double that does not scan", kAsciiHeader + "[ 1 zz ]\n", ReadDoubles, 16,
       "expected \"LI_U_GLUE_2(LtDouble,!)\" at line 2"},
      {"missing bracket", kAsciiHeader + "1 2 ]\n", ReadDoubles, 16, "Read \"1\", expected \"[\""},
      {"ascii word over 128 characters", kAsciiHeader + std::string(129, '7'), ReadInt32, 16, nullptr},
      {"bad string length", kBinaryHeader + std::string("\xfe\xff\xff\xff", 4), ReadString, 16,
       "Read \"-2\", expected \"String length\""},
      {"string longer than the limit", kBinaryHeader + std::string("\x01\0\0\x01", 4), ReadString, 16,
       "expected \"String length\""},
      {"end of data inside a value", kBinaryHeader + std::string("\x01\0", 2), ReadInt32, 18,
       "Unexpected end of data"},
      {"end of data inside a pad", kBinaryHeader + std::string("\x01", 1), ReadNat8Int32, 18, nullptr},
      {"end of data inside a string", kBinaryHeader + std::string("\x05\0\0\0ab", 6), ReadString, 18, nullptr},
      {"end of data inside a quoted string", kAsciiHeader + "  \"abc", ReadString, 16,
       "Read \"End of data!\", expected \"Quoted String\""},
      {"end of data after a backslash", kAsciiHeader + "  \"abc\\", ReadString, 16, "Quoted String"},
      {"truncated header", std::string("#LcUStream-V1.1 bin"), ReadNothing, 18, nullptr},
      {"wrong mark", std::string("#LcUStream-V1.2 binary double release utf8 linull\n"), ReadNothing, 16,
       "Read \"#LcUStream-V1.2\", expected \"#LcUStream-V1.1 \""},
      {"misspelt choice", std::string("#LcUStream-V1.1 binary double relaxed utf8 linull\n"), ReadNothing, 16,
       "Read \"rela\", expected \"release\""},
      {"unknown filter", std::string("#LcUStream-V1.1 ascii double release utf8 linull zip\n"), ReadNothing, 14,
       "Unknown configuration"},
  };
  for (const Row& row : rows) {
    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    std::string logged = Logged([&] {
      BeginReading(buffer, reader, row.bytes);
      row.read(reader);
    });
    EXPECT_EQ(row.code, reader.GetError()) << row.what;
    if (row.message) {
      EXPECT_NE(std::string::npos, logged.find(row.message)) << row.what << ": " << logged;
    }
    // The first code stands, later reads give zeros, and the end reports it.
    EXPECT_EQ(0, reader.ReadInt32()) << row.what;
    EXPECT_EQ(0.0, reader.ReadDouble()) << row.what;
    EXPECT_EQ(row.code, reader.GetError()) << row.what;
    EXPECT_FALSE(reader.ReadEnd(true)) << row.what;
  }
}

TEST_F(StreamErrors, UnknownFormatNameFailsOnlyWhenStrict) {
  std::string bytes = "#LcUStream-V1.1 binary double release utf8 Gearbox\n";
  bytes += std::string(5, '\0');
  for (bool strict : {false, true}) {
    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    EXPECT_EQ(!strict, BeginReading(buffer, reader, bytes, true, strict));
    EXPECT_EQ(strict ? 14 : 0, reader.GetError());
    if (!strict) {
      EXPECT_STREQ("Gearbox", reader.formatName.Get());
    }
    reader.ReadEnd(false);
  }
}

TEST_F(StreamErrors, AfterAnErrorReadsConsumeNothingAndArraysAreZeroed) {
  std::string bytes = kBinaryHeader + std::string("\x07\0\0\0\x09\0\0\0\x01\0\0\0\x02\0\0\0", 16);
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, bytes));
  EXPECT_EQ(7, reader.ReadInt32Checked(5) == 0 ? 7 : -1);
  EXPECT_EQ(16, reader.GetError());
  const uint8_t* before = reader.blockCurrent;
  int32_t values[2] = {5, 5};
  EXPECT_FALSE(reader.ReadInt32Array(values, 2));
  EXPECT_EQ(0, values[0]);
  EXPECT_EQ(0, values[1]);
  LcUStringA text("kept");
  EXPECT_FALSE(reader.ReadString(text));
  EXPECT_TRUE(text.IsNull());
  EXPECT_EQ(before, reader.blockCurrent);
}

TEST_F(StreamErrors, NegativeCheckedValue) {
  std::string bytes = kBinaryHeader + std::string("\xff\xff\xff\xff", 4);
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, bytes));
  EXPECT_EQ(0, reader.ReadInt32Checked());
  EXPECT_EQ(16, reader.GetError());
}

TEST_F(StreamErrors, AsciiEndMustBeWhiteSpace) {
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, kAsciiHeader + "  5\n  6\n"));
  EXPECT_EQ(5, reader.ReadInt32());
  std::string logged = Logged([&] { EXPECT_FALSE(reader.ReadEnd(true)); });
  EXPECT_EQ(16, reader.GetError());
  EXPECT_NE(std::string::npos, logged.find("expected \"White Space!\""));
}

// A sink that lends nothing, refuses what it is given, or fails at the end.
class FaultySink : public LcUStreamBuffer {
public:
  int fault = 0;
  bool GetWriteBlock(uint8_t** block, uint32_t* size) override {
    return fault != 1 && LcUStreamBuffer::GetWriteBlock(block, size);
  }
  bool CommitWrite(uint32_t count) override { return fault != 2 && LcUStreamBuffer::CommitWrite(count); }
  bool Flush() override { return fault != 3; }
  bool WriteEnd() override { return fault != 4 && LcUStreamBuffer::WriteEnd(); }
  bool WriteBegin(LcUStream* s) override { return fault != 5 && LcUStreamBuffer::WriteBegin(s); }
};

TEST_F(StreamErrors, SinkFailuresOnWriting) {
  const struct {
    int fault;
    int32_t code;
    const char* message;
  } rows[] = {{1, 4, "Write Failed"}, {2, 5, "Write Failed"}, {3, 6, "Flush Failed"}, {4, 7, "WriteEnd failed"},
              {5, 3, "WriteBegin failed"}};
  for (const auto& row : rows) {
    FaultySink sink;
    sink.fault = row.fault;
    LcUStreamWriter writer(&sink);
    std::string logged = Logged([&] {
      writer.WriteBegin(true);
      writer.WriteInt32(1);
      writer.WriteEnd();
    });
    EXPECT_EQ(row.code, writer.GetError()) << row.fault;
    EXPECT_NE(std::string::npos, logged.find(row.message)) << row.fault;
  }
}

TEST_F(StreamErrors, NeverBegunIsCode26) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  EXPECT_EQ(26, writer.GetError());
  writer.WriteInt32(5);
  EXPECT_FALSE(writer.WriteEnd());
  EXPECT_EQ(0u, buffer.GetSize());
}
}  // namespace

#include "serial/LcUStreamFilterSink.h"

namespace {
// A filter that flips every byte on its way to the next sink and back,
// lending its own block; it can be told to refuse to begin.
class FlipFilter : public LcUStreamFilterSink {
public:
  explicit FlipFilter(const char* name, bool refuse = false) : name(name), refuse(refuse) {}
  const char* GetName() const override { return name; }
  bool WriteBegin(LcUStream*) override {
    begun = !refuse;
    return begun;
  }
  bool GetWriteBlock(uint8_t** block, uint32_t* size) override {
    *block = local;
    *size = sizeof local;
    return true;
  }
  bool CommitWrite(uint32_t count) override {
    uint8_t* target;
    uint32_t room;
    for (uint32_t done = 0; done < count;) {
      if (!next->GetWriteBlock(&target, &room)) return false;
      uint32_t n = count - done < room ? count - done : room;
      for (uint32_t i = 0; i < n; ++i) target[i] = uint8_t(local[done + i] ^ 0xFF);
      if (!next->CommitWrite(n)) return false;
      done += n;
    }
    return true;
  }
  bool WriteEnd() override {
    ended = true;
    return true;
  }
  bool ReadBegin(LcUStream* s) override { return WriteBegin(s); }
  int32_t GetReadBlock(const uint8_t** block, uint32_t* size) override {
    const uint8_t* source;
    uint32_t count;
    if (int32_t r = next->GetReadBlock(&source, &count)) return r;
    if (!source || count == 0) {
      *block = nullptr;
      *size = 0;
      return 0;
    }
    count = count < sizeof local ? count : uint32_t(sizeof local);
    for (uint32_t i = 0; i < count; ++i) local[i] = uint8_t(source[i] ^ 0xFF);
    next->ConsumeRead(count);
    *block = local;
    *size = count;
    return 0;
  }
  bool ConsumeRead(uint32_t) override { return true; }
  bool ReadEnd() override {
    ended = true;
    return true;
  }

  const char* name;
  bool refuse;
  bool begun = false;
  bool ended = false;
  alignas(8) uint8_t local[64];
};

TEST_F(StreamErrors, FiltersAreNamedInTheHeaderAndPutBackByTheReader) {
  for (int32_t ascii : {0, 1}) {
    LcUStreamBuffer buffer;
    FlipFilter flip("flip");
    LcUStreamWriter writer(&buffer);
    writer.ascii = ascii;
    writer.filters.push_back(&flip);
    ASSERT_TRUE(writer.WriteBegin(true));
    for (int32_t i = 0; i < 100; ++i) writer.WriteInt32(i * 7919);
    writer.WriteString("through the filter");
    ASSERT_TRUE(writer.WriteEnd());
    std::string bytes = Bytes(buffer);
    EXPECT_EQ(0u, bytes.find(ascii ? "#LcUStream-V1.1 ascii double release utf8 linull flip\n"
                                   : "#LcUStream-V1.1 binary double release utf8 linull flip\n"));
    EXPECT_EQ(std::string::npos, bytes.find("through the filter"));

    FlipFilter other("other"), back("flip");
    LcUStreamReader reader(&buffer);
    reader.OfferFilter(&other);
    reader.OfferFilter(&back);
    ASSERT_TRUE(reader.ReadBegin(true));
    ASSERT_EQ(1u, reader.filters.size());
    EXPECT_EQ(&back, reader.filters[0]);
    for (int32_t i = 0; i < 100; ++i) ASSERT_EQ(i * 7919, reader.ReadInt32()) << i;
    LcUStringA text;
    reader.ReadString(text);
    EXPECT_STREQ("through the filter", text.Get());
    EXPECT_TRUE(reader.ReadEnd(true)) << reader.GetError();
    EXPECT_TRUE(back.ended);
    EXPECT_FALSE(other.begun);
  }
}

TEST_F(StreamErrors, AFailedBeginEndsTheFiltersBegunBeforeIt) {
  LcUStreamBuffer buffer;
  FlipFilter first("first"), second("second", true), third("third");
  LcUStreamWriter writer(&buffer);
  writer.filters = {&first, &second, &third};
  EXPECT_FALSE(writer.WriteBegin(true));
  EXPECT_EQ(3, writer.GetError());
  EXPECT_TRUE(first.ended);
  EXPECT_FALSE(second.ended);
  EXPECT_FALSE(third.begun);

  FlipFilter one("one"), two("two", true);
  LcUStreamReader reader(&buffer);
  reader.filters = {&one, &two};
  EXPECT_FALSE(reader.ReadBegin(false));
  EXPECT_EQ(8, reader.GetError());
  EXPECT_TRUE(one.ended);
}

TEST_F(StreamErrors, AsciiReadsAfterAnErrorConsumeNothing) {
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, kAsciiHeader + "  x\n  [ 1 2 ]\n  \"text\"\n"));
  EXPECT_EQ(0, reader.ReadInt32());
  EXPECT_EQ(16, reader.GetError());
  const uint8_t* before = reader.blockCurrent;
  int32_t line = reader.line;
  int32_t values[2] = {9, 9};
  EXPECT_FALSE(reader.ReadInt32Array(values, 2));
  LcUStringA text;
  EXPECT_FALSE(reader.ReadString(text));
  EXPECT_FALSE(reader.ExpectText("["));
  EXPECT_EQ(before, reader.blockCurrent);
  EXPECT_EQ(line, reader.line);
  EXPECT_EQ(0, values[1]);
}
}  // namespace

namespace {
TEST_F(StreamErrors, HeaderWords) {
  const std::string prefix = "#LcUStream-V1.1 ascii double release utf8 ";
  struct Row {
    std::string header;
    int32_t code;
    std::string formatName;
  } rows[] = {
      {prefix + std::string(127, 'f') + "\n", 0, std::string(127, 'f')},
      {prefix + std::string(128, 'f') + "\n", 0, std::string(128, 'f')},
      {prefix + std::string(128, 'f') + " \r\n", 0, std::string(128, 'f')},
      {prefix + "\n", 0, ""},
      {"#LcUStream-V1.1 asciidouble release utf8 linull\n", 16, ""},
      {"#LcUStream-V1.1 ascii double release utf8 linull\r\n", 0, ""},
  };
  for (const Row& row : rows) {
    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    reader.formatName.Assign("left over");
    BeginReading(buffer, reader, row.header + "  5\n");
    EXPECT_EQ(row.code, reader.GetError()) << row.header.size();
    if (row.code) continue;
    EXPECT_EQ(row.formatName, reader.formatName.Get() ? reader.formatName.Get() : "") << row.header.size();
    EXPECT_EQ(5, reader.ReadInt32()) << row.header.size();
    EXPECT_TRUE(reader.ReadEnd(true)) << row.header.size();
  }
  // 129 characters without a separator end the header there.
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  BeginReading(buffer, reader, prefix + std::string(129, 'f') + "\n");
  EXPECT_TRUE(reader.formatName.IsNull());
}
}  // namespace
