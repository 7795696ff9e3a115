#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "foundation/LcUString.h"
#include "serial/LcUGuid.h"

namespace {
std::string Text(const LcUGuid& guid) {
  LcUStringA text;
  guid.ToText(text);
  return text.Get();
}

LcUGuid Parse(const char* text) {
  LcUGuid guid;
  EXPECT_TRUE(guid.FromText(text)) << text;
  return guid;
}

const char* const kDns = "6ba7b810-9dad-11d1-80b4-00c04fd430c8";
const char* const kUrl = "6ba7b811-9dad-11d1-80b4-00c04fd430c8";
}  // namespace

TEST(LcUGuid, TextRoundTripInLowerCase) {
  LcUGuid guid = Parse("0A1B2C3D-4E5F-6A7B-8C9D-AEBFC0D1E2F3");
  EXPECT_EQ(guid.data1, 0x0A1B2C3Du);
  EXPECT_EQ(guid.data2, 0x4E5F);
  EXPECT_EQ(guid.data3, 0x6A7B);
  const uint8_t tail[8] = {0x8C, 0x9D, 0xAE, 0xBF, 0xC0, 0xD1, 0xE2, 0xF3};
  EXPECT_EQ(std::memcmp(guid.data4, tail, 8), 0);
  EXPECT_EQ(Text(guid), "0a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2f3");
  LcUString wide;
  guid.ToText(wide);
  LcUGuid back;
  EXPECT_TRUE(back.FromText(wide.Get()));
  EXPECT_EQ(back, guid);
  EXPECT_TRUE(LcUGuid().IsNil());
  EXPECT_EQ(Text(LcUGuid()), "00000000-0000-0000-0000-000000000000");
}

TEST(LcUGuid, BadTextGivesNilAndFalse) {
  const char* const kBad[] = {"",
                              "0a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2f",
                              "0a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2f30",
                              "0a1b2c3d_4e5f-6a7b-8c9d-aebfc0d1e2f3",
                              "0a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2g3",
                              "{a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2f3}",
                              " 0a1b2c3d-4e5f-6a7b-8c9d-aebfc0d1e2f"};
  for (const char* text : kBad) {
    LcUGuid guid = Parse(kDns);
    EXPECT_FALSE(guid.FromText(text)) << text;
    EXPECT_TRUE(guid.IsNil()) << text;
  }
  LcUGuid guid = Parse(kDns);
  EXPECT_FALSE(guid.FromText(static_cast<const char*>(nullptr)));
  EXPECT_TRUE(guid.IsNil());
  guid = Parse(kDns);
  EXPECT_FALSE(guid.FromText(u"6ba7b810-9dad-11d1-80b4-00c04fd430c\u0100"));
  EXPECT_TRUE(guid.IsNil());
}

TEST(LcUGuid, BytesAreNetworkOrder) {
  uint8_t bytes[16];
  for (int i = 0; i < 16; ++i) bytes[i] = uint8_t(0x10 + i);
  LcUGuid guid;
  guid.FromBytes(bytes);
  EXPECT_EQ(guid.data1, 0x10111213u);
  EXPECT_EQ(guid.data2, 0x1415);
  EXPECT_EQ(guid.data3, 0x1617);
  EXPECT_EQ(guid.data4[0], 0x18);
  EXPECT_EQ(guid.data4[7], 0x1F);
  EXPECT_EQ(Text(guid), "10111213-1415-1617-1819-1a1b1c1d1e1f");
  uint8_t back[16];
  guid.ToBytes(back);
  EXPECT_EQ(std::memcmp(back, bytes, 16), 0);
}

TEST(LcUGuid, CompareOrdersFieldByField) {
  LcUGuid a = Parse("00000001-0000-0000-0000-000000000000");
  LcUGuid b = Parse("00000000-ffff-ffff-ffff-ffffffffffff");
  LcUGuid c = Parse("00000000-ffff-ffff-ffff-fffffffffffe");
  LcUGuid d = Parse("00000000-fffe-ffff-ffff-ffffffffffff");
  LcUGuid e = Parse("00000000-ffff-fffe-ffff-ffffffffffff");
  EXPECT_GT(a.Compare(b), 0);
  EXPECT_LT(b.Compare(a), 0);
  EXPECT_LT(c.Compare(b), 0);
  EXPECT_LT(d.Compare(b), 0);
  EXPECT_LT(e.Compare(b), 0);
  EXPECT_EQ(b.Compare(b), 0);
  EXPECT_TRUE(c < b);
  EXPECT_TRUE(a != b);
}

TEST(LcUGuid, GeneratedValuesCarryVersionFourInThisSystemsOrder) {
  std::set<std::string> seen;
  for (int i = 0; i < 200; ++i) {
    LcUGuid guid;
    ASSERT_TRUE(guid.Generate());
    // The system's version 4 layout read in network order: the version
    // nibble is the high nibble of data3's low byte.
    EXPECT_EQ((guid.data3 >> 4) & 0xF, 4) << Text(guid);
    EXPECT_EQ(guid.data4[0] & 0xC0, 0x80) << Text(guid);
    seen.insert(Text(guid));
  }
  EXPECT_EQ(seen.size(), 200u);
}

TEST(LcUGuid, CompactTextIsExactly22Characters) {
  // Groups of 2, 4, 4, 4, 4, 4 characters fill 1, 3, 3, 3, 3, 3 bytes.
  LcUGuid guid;
  ASSERT_TRUE(guid.FromCompactText("0100000000000000000001"));
  EXPECT_EQ(Text(guid), "01000000-0000-0000-0000-000000000001");
  ASSERT_TRUE(guid.FromCompactText("3$$$$$$$$$$$$$$$$$$$$$"));
  EXPECT_EQ(Text(guid), "ffffffff-ffff-ffff-ffff-ffffffffffff");
  ASSERT_TRUE(guid.FromCompactText(u"0A0000000000000000000z"));
  EXPECT_EQ(Text(guid), "0a000000-0000-0000-0000-00000000003d");
  // The first group's high bits carry nothing.
  ASSERT_TRUE(guid.FromCompactText("$$0000000000000000000a"));
  EXPECT_EQ(guid.data1, 0xFF000000u);
  // A custom alphabet.
  const char* reversed = "$_zyxwvutsrqponmlkjihgfedcbaZYXWVUTSRQPONMLKJIHGFEDCBA9876543210";
  ASSERT_TRUE(guid.FromCompactText("$z$$$$$$$$$$$$$$$$$$$_", reversed));
  EXPECT_EQ(Text(guid), "02000000-0000-0000-0000-000000000001");

  for (const char* bad : {"010000000000000000000", "01000000000000000000010", "0100000000000000000 01",
                          "01000000000000000000-1", ""}) {
    guid = Parse(kDns);
    EXPECT_FALSE(guid.FromCompactText(bad)) << bad;
    EXPECT_TRUE(guid.IsNil()) << bad;
  }
  EXPECT_FALSE(guid.FromCompactText(u"010000000000000000000\u0130"));
}

// Expected values come from another implementation of version 5 names
// (Python's uuid module and hashlib).
TEST(LcUGuid, NamedValuesMatchVersionFive) {
  struct Case {
    const char* nameSpace;
    const char* name;
    const char* expected;
  };
  std::string longName = "https://example.org/a/very/long/path/" + std::string(200, 'x');
  const Case kCases[] = {{kDns, "www.example.com", "2ed6657d-e927-568b-95e1-2665a8aea6a2"},
                         {kUrl, "http://www.example.com/", "fcde3c85-2270-590f-9e7c-ee003d65e0e2"},
                         {kUrl, longName.c_str(), "475a7357-655d-5a24-adee-5f18934c688b"},
                         {kDns, "", "4ebd0208-8328-5d69-8c44-ec50939c0967"}};
  for (const Case& c : kCases) {
    LcUGuid named;
    LcUGuid::MakeNamed(named, Parse(c.nameSpace), c.name);
    EXPECT_EQ(Text(named), c.expected) << c.name;
    LcUGuid::MakeNamed(named, Parse(c.nameSpace), c.name, uint32_t(std::strlen(c.name)));
    EXPECT_EQ(Text(named), c.expected) << c.name;
  }
}

// Numbers, wide units and a data GUID's fields are hashed little-endian.
TEST(LcUGuid, NamedDataFormsHashLittleEndian) {
  LcUGuid named;
  LcUGuid::MakeNamed(named, Parse(kDns), uint32_t(0x01020304));
  EXPECT_EQ(Text(named), "0572fca0-9bac-56a4-811a-cc71d3afe79d");
  LcUGuid::MakeNamed(named, Parse(kDns), uint64_t(0x0102030405060708));
  EXPECT_EQ(Text(named), "c097bfe7-e9bb-56b1-9452-fcb4207daeec");
  LcUGuid::MakeNamed(named, Parse(kUrl), u"Gr\u00FC\u00DFe");
  EXPECT_EQ(Text(named), "6ba42891-2d67-55c6-a150-6b823d8d5a96");
  LcUGuid::MakeNamed(named, Parse(kDns), Parse("00112233-4455-6677-8899-aabbccddeeff"));
  EXPECT_EQ(Text(named), "f0f4fa94-8e73-5320-842c-0163c9101e33");
}

TEST(LcUGuid, NamedPathsAreCanonicalFirst) {
  LcUGuid a, b, c;
  LcUGuid::MakeNamedPath(a, Parse(kUrl), u"  C:\\models\\part.glf\\ ");
  LcUGuid::MakeNamedPath(b, Parse(kUrl), u"C:\\models\\part.glf");
  LcUGuid::MakeNamedPath(c, Parse(kUrl), u"C:\\models\\other.glf");
  EXPECT_EQ(a, b);
  EXPECT_NE(a, c);
  EXPECT_EQ((a.data3 >> 12), 5);
}
