#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "StreamTesting.h"
#include "serial/LcUData.h"
#include "serial/LcUName.h"

using namespace StreamTesting;

namespace {
class DataTest : public StreamTest {
protected:
  static void SetUpTestSuite() {
    StreamTest::SetUpTestSuite();
    LcUData::Initialize();
  }
  static void TearDownTestSuite() {
    LcUData::Terminate();
    StreamTest::TearDownTestSuite();
  }
};

std::u16string Text(const LcUString& s) {
  return s.Get() ? s.Get() : u"<null>";
}

LcUData Make(int32_t tag) {
  LcUData d;
  switch (tag) {
    case LcUData::eFLOAT: d.SetFloat(2.5); break;
    case LcUData::eINT32: d.SetInt32(-42); break;
    case LcUData::eBOOL: d.SetBool(true); break;
    case LcUData::eWSTRING: d.SetWString(u"wide \u00e9"); break;
    case LcUData::eTIME: d.SetTime(86400 + 3661); break;
    case LcUData::eLINEAR: d.SetFloat(-0.125, LcUData::eLINEAR); break;
    case LcUData::eANGLE: d.SetFloat(1.0, LcUData::eANGLE); break;
    case LcUData::eNAME: {
      LcUName* name = new LcUName("key", u"User");
      d.SetName(name);
      name->Release();
      break;
    }
    case LcUData::eSTRING: d.SetString("narrow"); break;
    case LcUData::eAREA: d.SetFloat(3.0, LcUData::eAREA); break;
    case LcUData::eVOLUME: d.SetFloat(4.0, LcUData::eVOLUME); break;
    case LcUData::eVECTOR3: d.SetVector3(1, -2, 0.5); break;
    case LcUData::eVECTOR2: d.SetVector2(7, 8); break;
    default: break;
  }
  return d;
}

TEST_F(DataTest, TextForms) {
  struct Row {
    int32_t tag;
    const char16_t* registry;
    const char16_t* tagged;
  } rows[] = {
      {0, u"0", u"0"},
      {1, u"1 2.5000000000000000000", u"1:2.5000000000000000000"},
      {2, u"2 -42", u"2:-42"},
      {3, u"3 1", u"3:1"},
      {4, u"4wide \u00e9", u"4:wide \u00e9"},
      {5, u"5 1970/01/02 01:01:01 GMT", u"5:1970/01/02 01:01:01 GMT"},
      {6, u"6 -0.1250000000000000000", u"6:-0.1250000000000000000"},
      {8, u"8 3:keyUser", u"8:3:keyUser"},
      {9, u"9narrow", u"9:narrow"},
      {11, u"; 4.0000000000000000000", u";:4.0000000000000000000"},
      {12, u"< 1.0000000000000000000;-2.0000000000000000000;0.5000000000000000000",
       u"<:1.0000000000000000000;-2.0000000000000000000;0.5000000000000000000"},
      {13, u"= 7.0000000000000000000;8.0000000000000000000", u"=:7.0000000000000000000;8.0000000000000000000"},
  };
  for (const Row& row : rows) {
    LcUData d = Make(row.tag);
    LcUString text;
    d.ToRegistryText(text);
    EXPECT_EQ(std::u16string(row.registry), Text(text)) << row.tag;
    d.ToTaggedText(text);
    EXPECT_EQ(std::u16string(row.tagged), Text(text)) << row.tag;
    LcUData back;
    EXPECT_TRUE(back.FromRegistryText(row.registry, nullptr)) << row.tag;
    EXPECT_TRUE(LcUData::Equal(d, back)) << row.tag;
    LcUData tagged;
    EXPECT_TRUE(tagged.FromTaggedText(row.tagged)) << row.tag;
    EXPECT_TRUE(LcUData::Equal(d, tagged)) << row.tag;
  }
}

TEST_F(DataTest, RefusedTextsLeaveTheValueEmpty) {
  struct Row {
    const char16_t* registry;
    bool ok;
    int32_t tag;
  } rows[] = {
      {u"1 2.5", true, 1},       {u"4hello", true, 4},  {u"0", true, 0},     {u"1 x", false, 0},
      {u"1 ", false, 0},         {u"4", true, 4},       {u"9", true, 9},     {u"2 ", false, 0},
      {u"5 1970/01/01 00:00", false, 0},                {u"8 noColon", false, 0},
      {u"< 1;2", false, 0},      {u"?oops", false, 0},  {u"= 1;2", true, 13},
  };
  for (const Row& row : rows) {
    LcUData d = Make(LcUData::eINT32);
    EXPECT_EQ(row.ok, d.FromRegistryText(row.registry, nullptr)) << std::string(row.registry, row.registry + 3);
    EXPECT_EQ(row.tag, d.GetTag());
  }
  LcUData fallback = Make(LcUData::eBOOL), d;
  EXPECT_TRUE(d.FromRegistryText(u"", &fallback));
  EXPECT_TRUE(LcUData::Equal(fallback, d));
  EXPECT_FALSE(d.FromTaggedText(u"2-42"));
  LcUData time;
  ASSERT_TRUE(time.FromText(LcUData::eTIME, u"1970/01/01 00:00:00 GMT"));
  EXPECT_EQ(0, time.GetTime());
  ASSERT_TRUE(time.FromText(LcUData::eTIME, u"1969/12/31 23:59:59"));
  EXPECT_EQ(-1, time.GetTime());
}

TEST_F(DataTest, DebugTexts) {
  struct Row {
    int32_t tag;
    const char16_t* text;
  } rows[] = {{0, u"<<none>>"}, {1, u"2.5"},      {2, u"-42"},     {3, u"True"},
              {5, u"90061"},    {8, u"Name=key , UserName=User"},   {9, u"narrow"},
              {12, u"1, -2, 0.5"}};
  for (const Row& row : rows) {
    LcUString text;
    Make(row.tag).ToDebugText(text);
    EXPECT_EQ(std::u16string(row.text), Text(text)) << row.tag;
  }
  LcUData nullText;
  nullText.SetWString(nullptr);
  LcUString text;
  nullText.ToDebugText(text);
  EXPECT_EQ(u"<<null>>", Text(text));
}

TEST_F(DataTest, Equality) {
  LcUData nan, empty1, empty2, f, linear;
  nan.SetFloat(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(LcUData::Equal(nan, nan));
  EXPECT_TRUE(LcUData::Equal(empty1, empty2));
  f.SetFloat(1.5);
  linear.SetFloat(1.5, LcUData::eLINEAR);
  EXPECT_FALSE(LcUData::Equal(f, linear));
  EXPECT_TRUE(LcUData::EqualNumeric(f, linear));
  LcUData a = Make(LcUData::eWSTRING), b = a;
  EXPECT_TRUE(LcUData::Equal(a, b));
  EXPECT_NE(a.GetWString(), b.GetWString());  // a deep copy
  LcUData n1 = Make(LcUData::eNAME), n2 = n1;
  EXPECT_EQ(n1.GetName(), n2.GetName());  // a shared name
  EXPECT_EQ(3, n1.GetName()->GetRefCount() + 1);
  LcUData nullName;
  nullName.SetWString(nullptr);
  EXPECT_FALSE(LcUData::Equal(nullName, a));
}

TEST_F(DataTest, ScanForm) {
  LcUData d;
  int32_t end = 0;
  EXPECT_TRUE(d.Parse(u" 12.5 rest", LcUData::eFLOAT, false, &end));
  EXPECT_EQ(12.5, d.GetFloat());
  EXPECT_EQ(5, end);
  EXPECT_FALSE(d.Parse(u"12.5 rest", LcUData::eFLOAT, true, &end));
  EXPECT_TRUE(d.Parse(u"yes", LcUData::eBOOL, true, &end));
  EXPECT_TRUE(d.GetBool());
  EXPECT_TRUE(d.Parse(u"nope", LcUData::eBOOL, true, &end));
  EXPECT_FALSE(d.GetBool());
  EXPECT_FALSE(d.Parse(u"1;2", LcUData::eVECTOR2, false, &end));
}

// The binary forms at each version gate, through a real stream.
TEST_F(DataTest, BinaryFormsByVersion) {
  struct Row {
    int32_t tag;
    uint32_t version;
    std::string bytes;  // after the header
  } rows[] = {
      {LcUData::eAREA, 208, std::string("\x01\0\0\0\0\0\0\0\0\0\0\0\0\0\x08\x40", 16)},
      {LcUData::eAREA, 209, std::string("\x0a\0\0\0\0\0\0\0\0\0\0\0\0\0\x08\x40", 16)},
      {LcUData::eSTRING, 90, std::string("\x04\0\0\0\x06\0\0\0narrow\0\0", 16)},
      {LcUData::eSTRING, 91, std::string("\x09\0\0\0\x06\0\0\0narrow\0\0", 16)},
      {LcUData::eVECTOR2, 446, std::string("\x04\0\0\0\x06\0\0\0(7, 8)\0\0", 16)},
      {LcUData::eINT32, 441, std::string("\x02\0\0\0\xd6\xff\xff\xff", 8)},
      {LcUData::eTIME, 5, std::string("\x05\0\0\0\0\0\0\0\xcd\x5f\x01\0\0\0\0\0", 16)},
  };
  for (const Row& row : rows) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer, row.version);
    ASSERT_TRUE(writer.WriteBegin(false));
    Make(row.tag).WriteBinary(writer);
    ASSERT_TRUE(writer.WriteEnd());
    EXPECT_EQ(row.bytes, Bytes(buffer)) << row.tag << " v" << row.version;
    LcUStreamReader reader(&buffer, row.version);
    ASSERT_TRUE(reader.ReadBegin(false));
    LcUData back;
    EXPECT_TRUE(back.ReadBinary(reader));
    if (row.bytes[0] == char(row.tag)) {
      EXPECT_TRUE(LcUData::Equal(Make(row.tag), back)) << row.tag;
    }
  }
  // An unknown tag and a name without stream hooks both fail the stream with 16.
  for (int32_t tag : {99, int32_t(LcUData::eNAME)}) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer, 441);
    writer.WriteBegin(false);
    writer.WriteInt32(tag);
    writer.WriteEnd();
    LcUStreamReader reader(&buffer, 441);
    reader.ReadBegin(false);
    LcUData back = Make(LcUData::eINT32);
    EXPECT_FALSE(back.ReadBinary(reader));
    EXPECT_EQ(16, reader.GetError());
    EXPECT_TRUE(back.IsEmpty());
  }
}
}  // namespace

#include "serial/LcUNameTable.h"
#include "serial/LcUStreamNameHooks.h"

namespace {
TEST_F(DataTest, NamesGoByReferenceOnceHooksAreInstalled) {
  LcUStreamNameHooks::Install();
  LcUData a = Make(LcUData::eNAME), b = a, none;
  none.SetName(nullptr);
  for (int32_t ascii : {0, 1}) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer, 441);
    writer.ascii = ascii;
    ASSERT_TRUE(writer.WriteBegin(true));
    a.WriteBinary(writer);
    b.WriteBinary(writer);
    none.WriteBinary(writer);
    ASSERT_TRUE(writer.WriteEnd());

    LcUNameTable* table = new LcUNameTable;
    LcUStreamReader reader(&buffer, 441);
    reader.names = table;
    ASSERT_TRUE(reader.ReadBegin(true));
    LcUData ra, rb, rnone;
    EXPECT_TRUE(ra.ReadBinary(reader));
    EXPECT_TRUE(rb.ReadBinary(reader));
    EXPECT_TRUE(rnone.ReadBinary(reader));
    EXPECT_TRUE(reader.ReadEnd(true)) << reader.GetError();
    EXPECT_TRUE(LcUData::Equal(a, ra));
    EXPECT_EQ(ra.GetName(), rb.GetName());
    EXPECT_EQ(ra.GetName(), table->Intern(u"User", "key"));
    EXPECT_EQ(nullptr, rnone.GetName());
    EXPECT_EQ(LcUData::eNAME, rnone.GetTag());
    table->Release();
  }
  LcUStreamNameHooks::Remove();
}
}  // namespace
