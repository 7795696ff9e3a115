#include <string>
#include <vector>

#include "StreamTesting.h"

using namespace StreamTesting;

namespace {
const Choices kBinary{0, 1, 0};
const Choices kAscii{1, 1, 0};
const std::string kBinaryHeader("#LcUStream-V1.1 binary double release utf8 linull\n\0\0\0\0\0\0", 56);

class StreamBytes : public StreamTest {};

TEST_F(StreamBytes, BinaryHeaderIsPaddedToEight) {
  EXPECT_EQ(kBinaryHeader, Written(kBinary, [](LcUStreamWriter&) {}));
  std::string debug = Written({0, 0, 1}, [](LcUStreamWriter&) {});
  // 49 bytes of text, the Sync token on a 4-byte boundary, then padding to 8.
  EXPECT_EQ(std::string("#LcUStream-V1.1 binary single debug utf8 linull\n", 48) + std::string("\x01\0\0\0\0\0\0\0", 8),
            debug);
  EXPECT_EQ("#LcUStream-V1.1 ascii double release utf8 linull\n", Written(kAscii, [](LcUStreamWriter&) {}));
}

TEST_F(StreamBytes, BinaryPaddingBetweenValues) {
  struct Row {
    const char* what;
    void (*write)(LcUStreamWriter&);
    std::string body;
  };
  const Row rows[] = {
      {"Int32 after Nat8 pads three", [](LcUStreamWriter& w) { w.WriteNat8(1); w.WriteInt32(2); },
       std::string("\x01\0\0\0\x02\0\0\0", 8)},
      {"Nat8 after Int32 pads none", [](LcUStreamWriter& w) { w.WriteInt32(2); w.WriteNat8(1); },
       std::string("\x02\0\0\0\x01\0\0\0", 8)},
      {"Double after Int32 pads four", [](LcUStreamWriter& w) { w.WriteInt32(-1); w.WriteDouble(1.0); },
       std::string("\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\xf0\x3f", 16)},
      {"Int16 after Nat8 pads one", [](LcUStreamWriter& w) { w.WriteNat8(9); w.WriteInt16(-2); },
       std::string("\x09\0\xfe\xff\0\0\0\0", 8)},
      {"empty array writes nothing", [](LcUStreamWriter& w) { w.WriteNat8(3); w.WriteDoubleArray(nullptr, 0); },
       std::string("\x03\0\0\0\0\0\0\0", 8)},
      {"null and empty strings", [](LcUStreamWriter& w) { w.WriteString(nullptr); w.WriteString(""); },
       std::string("\xff\xff\xff\xff\0\0\0\0", 8)},
      {"string bytes carry no terminator", [](LcUStreamWriter& w) { w.WriteString("ab"); w.WriteNat8(7); },
       std::string("\x02\0\0\0ab\x07\0", 8)},
      {"single Float is four bytes", [](LcUStreamWriter& w) { w.WriteNat64(5); w.WriteFloat(2.0); },
       std::string("\x05\0\0\0\0\0\0\0\0\0\0\x40\0\0\0\0", 16)},
  };
  for (const Row& row : rows) {
    Choices c = kBinary;
    if (std::string(row.what).find("single") == 0) c.doublePrecision = 0;
    std::string bytes = Written(c, row.write);
    ASSERT_GE(bytes.size(), kBinaryHeader.size()) << row.what;
    EXPECT_EQ(row.body, bytes.substr(kBinaryHeader.size())) << row.what;
  }
}

TEST_F(StreamBytes, BinaryDebugTokens) {
  std::string bytes = Written({0, 1, 1}, [](LcUStreamWriter& w) {
    int16_t pair[2] = {1, 2};
    w.WriteInt16Array(pair, 2);
    w.WriteString("x");
  }, false);
  // The tokens, the values, and at the end the Sync token and the pad.
  EXPECT_EQ(std::string("\x0f\0\0\0\x02\0\0\0\x01\0\x02\0"
                        "\x0d\0\0\0\x01\0\0\0x\0\0\0"
                        "\x01\0\0\0\0\0\0\0",
                        32),
            bytes);
}

TEST_F(StreamBytes, AsciiLayout) {
  struct Row {
    const char* what;
    void (*write)(LcUStreamWriter&);
    const char* text;
  };
  const Row rows[] = {
      {"scalar", [](LcUStreamWriter& w) { w.WriteInt32(-42); }, "            -42\n"},
      {"hex without prefix", [](LcUStreamWriter& w) { w.WriteNat32(0xBEEF); }, "        beef\n"},
      {"count 0", [](LcUStreamWriter& w) { w.WriteInt32Array(nullptr, 0); }, "  [ ]\n"},
      {"count 1 has no brackets", [](LcUStreamWriter& w) { int16_t v = 5; w.WriteInt16Array(&v, 1); }, "         5\n"},
      {"count 2", [](LcUStreamWriter& w) { uint8_t v[2] = {1, 0xff}; w.WriteNat8Array(v, 2); }, "  [  1 ff ]\n"},
      {"a line break after the per-line count", [](LcUStreamWriter& w) {
         double v[4] = {1, 2, 3, 4};
         w.WriteDoubleArray(v, 4);
       },
       "  [                   1                   2                   3\n"
       "                      4\n  ]\n"},
      {"escapes", [](LcUStreamWriter& w) { w.WriteString("a\"b\\c"); }, "  \"a\\\"b\\\\c\"\n"},
      {"null string", [](LcUStreamWriter& w) { w.WriteString(nullptr); }, "  linull\n"},
      {"debug tokens", [](LcUStreamWriter& w) {
         w.debug = 1;
         uint16_t v[2] = {1, 2};
         w.WriteNat16Array(v, 2);
         w.WriteBoolean(true);
       },
       "  Nat16Array 2\n  [    1    2 ]\n  Boolean\n           1\n  Sync\n"},
      {"precision and zero threshold", [](LcUStreamWriter& w) {
         w.SetDoublePrecision(30);
         w.SetSinglePrecision(3);
         w.SetDoubleZeroThreshold(1e-9);
         w.WriteDouble(0.1);
         w.WriteSingle(3.14159f);
         w.WriteDouble(-1e-10);
       },
       "    0.10000000000000001\n     3.14\n                      0\n"},
  };
  for (const Row& row : rows) EXPECT_EQ(row.text, Written(kAscii, row.write, false)) << row.what;
}

TEST_F(StreamBytes, AsciiReadsWhatTheLayoutLeavesOut) {
  // The reader does not care for layout: one value per word, any white space.
  std::string text = "#LcUStream-V1.1 ascii double release utf8 linull\r\n[1\t-2\n3 ]";
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, text));
  int32_t v[3];
  EXPECT_TRUE(reader.ReadInt32Array(v, 3));
  EXPECT_EQ(1, v[0]);
  EXPECT_EQ(-2, v[1]);
  EXPECT_EQ(3, v[2]);
  EXPECT_TRUE(reader.ReadEnd(true));
}

TEST_F(StreamBytes, LongStringsAreCutAtTheLimit) {
  std::string exact(LcUStream::eMAX_STRING, 'x');
  std::string longer = exact + "yz";
  std::string bytes;
  std::string logged = Logged([&] { bytes = Written(kBinary, [&](LcUStreamWriter& w) { w.WriteString(exact.c_str()); }); });
  EXPECT_EQ(std::string::npos, logged.find("Truncating string"));
  logged = Logged([&] { bytes = Written(kBinary, [&](LcUStreamWriter& w) { w.WriteString(longer.c_str()); }); });
  EXPECT_NE(std::string::npos, logged.find("Truncating string"));
  EXPECT_EQ(longer.size(), exact.size() + 2);  // the caller's text is left as it was
  // The length, the bytes, and the end pad to 8.
  ASSERT_EQ(kBinaryHeader.size() + 4 + exact.size() + 4, bytes.size());
  EXPECT_EQ(std::string("\0\0\0\x01", 4), bytes.substr(kBinaryHeader.size(), 4));

  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, bytes));
  LcUStringA read;
  EXPECT_TRUE(reader.ReadString(read));
  EXPECT_EQ(int32_t(exact.size()), read.Length());
  EXPECT_TRUE(reader.ReadEnd(true));
}

TEST_F(StreamBytes, WideStringsFollowTheTextEncoding) {
  auto written = [](int32_t encoding) {
    return Written(kBinary, [&](LcUStreamWriter& w) {
      w.textEncoding = encoding;
      w.WriteWideString(u"\U0001F600");
    }, false);
  };
  // The plain utf8 form writes each surrogate for itself; the paired form joins them.
  EXPECT_EQ(std::string("\x06\0\0\0\xed\xa0\xbd\xed\xb8\x80\0\0\0\0\0\0", 16), written(LcUStream::eUTF8));
  EXPECT_EQ(std::string("\x04\0\0\0\xf0\x9f\x98\x80", 8), written(LcUStream::eUTF8_PAIRED));
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  writer.textEncoding = LcUStream::eC;
  ASSERT_TRUE(writer.WriteBegin(true));
  ASSERT_TRUE(writer.WriteEnd());
  EXPECT_EQ(0u, Bytes(buffer).find("#LcUStream-V1.1 binary double release C linull\n"));
}
}  // namespace
