#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "SerialTesting.h"
#include "serial/LcUJsonStream.h"

namespace {
std::string Printed(LcUJsonStream& stream, bool pretty = false) {
  LcUStringA out;
  bool ok = stream.PrintText(pretty, out);
  return (ok ? "" : "<false>") + std::string(out.IsNull() ? "<null>" : out.Get());
}

const char* const kDescription =
    "{\"Type\":\"cache\",\"Version\":3,\"items\":[{\"name\":\"a\",\"size\":\"18446744073709551615\","
    "\"offset\":\"-9223372036854775808\",\"valid\":true}],\"origin\":[1,-2.5,0.10000000000000001],"
    "\"title\":\"Gr\xC3\xBC\xC3\x9F" "e\",\"count\":-7,\"empty\":\"\"}";

void WriteDescription(LcUJsonStream& stream) {
  stream.BeginObject();
  stream.SetKey("Type");
  stream.WriteText("cache");
  stream.SetKey("Version");
  stream.WriteInt32(3);
  stream.SetKey("items");
  stream.BeginArray();
  stream.BeginObject();
  stream.SetKey("name");
  stream.WriteText("a");
  stream.SetKey("size");
  stream.WriteUInt64Text(UINT64_MAX);
  stream.SetKey("offset");
  stream.WriteInt64Text(INT64_MIN);
  stream.SetKey("valid");
  stream.WriteBool(true);
  stream.LeaveObject();
  stream.LeaveArray();
  stream.SetKey("origin");
  const double origin[3] = {1, -2.5, 0.1};
  stream.WriteVector3(origin);
  stream.SetKey("title");
  stream.WriteWideText(u"Gr\u00FC\u00DFe");
  stream.SetKey("count");
  stream.WriteDouble(-7);
  stream.SetKey("empty");
  stream.WriteText(nullptr);
  stream.LeaveObject();
}
}  // namespace

TEST(LcUJsonStream, WritesAndPrintsOnce) {
  LcUJsonStream stream;
  WriteDescription(stream);
  EXPECT_EQ(stream.ObjectDepth(), 0);
  EXPECT_EQ(stream.ArrayDepth(), 0);
  EXPECT_EQ(Printed(stream), kDescription);
  EXPECT_EQ(stream.Root(), nullptr);
  EXPECT_EQ(Printed(stream), "<false>") << "a stream prints once";
  LcUJsonStream pretty;
  WriteDescription(pretty);
  std::string text = Printed(pretty, true);
  LcUStringA compact;
  ASSERT_TRUE(LcUJsonStream::Reformat(text.c_str(), false, compact));
  EXPECT_STREQ(compact.Get(), kDescription);
  EXPECT_FALSE(LcUJsonStream::Reformat("[1,", true, compact));
  EXPECT_STREQ(compact.Get(), "");
}

TEST(LcUJsonStream, ReadsWhatWasWritten) {
  LcUJsonStream stream;
  ASSERT_TRUE(stream.LoadText(kDescription));
  ASSERT_TRUE(stream.EnterObject());
  LcUStringA type;
  int32_t version = 0;
  ASSERT_TRUE(stream.ReadHeader(type, version));
  EXPECT_STREQ(type.Get(), "cache");
  EXPECT_EQ(version, 3);
  ASSERT_TRUE(stream.FindKey("ITEMS"));
  EXPECT_EQ(stream.EnterArray(1), 1);
  ASSERT_TRUE(stream.EnterObject());
  stream.SetKey("Name");
  LcUStringA name;
  EXPECT_TRUE(stream.ReadText(name));
  EXPECT_STREQ(name.Get(), "a");
  stream.SetKey("size");
  EXPECT_EQ(stream.ReadUInt64Text(), UINT64_MAX);
  stream.SetKey("offset");
  EXPECT_EQ(stream.ReadInt64Text(), INT64_MIN);
  stream.SetKey("valid");
  EXPECT_TRUE(stream.ReadBool());
  stream.LeaveObject();
  stream.LeaveArray();
  double origin[3];
  stream.SetKey("origin");
  ASSERT_TRUE(stream.ReadVector3(origin));
  EXPECT_EQ(origin[1], -2.5);
  EXPECT_EQ(origin[2], 0.1);
  LcUString title;
  stream.SetKey("title");
  ASSERT_TRUE(stream.ReadWideText(title));
  EXPECT_TRUE(LcUString::Equal(title.Get(), u"Gr\u00FC\u00DFe"));
  stream.SetKey("count");
  EXPECT_EQ(stream.ReadInt64(), -7);
  stream.SetKey("empty");
  EXPECT_TRUE(stream.ReadText(name));
  EXPECT_STREQ(name.Get(), "");
  stream.LeaveObject();
  EXPECT_FALSE(stream.Failed());
  EXPECT_EQ(stream.ObjectDepth(), 0);
  EXPECT_TRUE(stream.Finish());
}

TEST(LcUJsonStream, MissingOptionalKeysAreNoFailure) {
  LcUJsonStream stream;
  ASSERT_TRUE(stream.LoadText("{\"a\":1}"));
  stream.EnterObject();
  EXPECT_FALSE(stream.FindKey("b"));
  EXPECT_FALSE(stream.Failed());
  // With the key cleared, a read has no member to take.
  EXPECT_EQ(stream.ReadInt32(), 0);
  EXPECT_TRUE(stream.Failed());
  EXPECT_FALSE(stream.Finish());
  EXPECT_TRUE(stream.Failed()) << "Finish leaves the failure";
  stream.Clear();
  EXPECT_FALSE(stream.Failed());
}

// Each case breaks the stream once; everything after reads zero.
TEST(LcUJsonStream, FailureIsStickyWithZeroValues) {
  struct Case {
    const char* name;
    const char* text;
    void (*breakIt)(LcUJsonStream&);
  };
  const Case kCases[] = {
      {"past the array", "[1,2]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         s.ReadInt32();
         s.ReadInt32();
         s.ReadInt32();
       }},
      {"string as int", "[\"7\"]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         s.ReadInt32();
       }},
      {"number as bool", "[0]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         s.ReadBool();
       }},
      {"number as text", "[0]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         LcUStringA t;
         s.ReadText(t);
       }},
      {"wrong count", "[1,2]", [](LcUJsonStream& s) { EXPECT_EQ(s.EnterArray(3), 2); }},
      {"object as array", "{}", [](LcUJsonStream& s) { EXPECT_EQ(s.EnterArray(), 0); }},
      {"array as object", "[]", [](LcUJsonStream& s) { EXPECT_FALSE(s.EnterObject()); }},
      {"key outside an object", "[]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         s.FindKey("a");
       }},
      {"no key", "{\"a\":1}",
       [](LcUJsonStream& s) {
         s.EnterObject();
         s.ReadDouble();
       }},
      {"null member", "{\"a\":null}",
       [](LcUJsonStream& s) {
         s.EnterObject();
         s.SetKey("a");
         s.ReadDouble();
       }},
      {"bad 64-bit text", "[\"x1\"]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         EXPECT_EQ(s.ReadInt64Text(), 0);
       }},
      {"negative unsigned text", "[\"-1\"]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         EXPECT_EQ(s.ReadUInt64Text(), 0u);
       }},
      {"overflowing text", "[\"18446744073709551616\"]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         EXPECT_EQ(s.ReadUInt64Text(), 0u);
       }},
      {"short vector", "[[1,2]]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         double v[3];
         EXPECT_FALSE(s.ReadVector3(v));
       }},
      {"vector of text", "[[1,2,\"3\"]]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         double v[3] = {9, 9, 9};
         EXPECT_FALSE(s.ReadVector3(v));
         EXPECT_EQ(v[0], 0.0);
       }},
      {"invalid UTF-8 as wide text", "[\"\xFF\"]",
       [](LcUJsonStream& s) {
         s.EnterArray();
         LcUString t;
         EXPECT_FALSE(s.ReadWideText(t));
       }},
  };
  for (const Case& c : kCases) {
    LcUJsonStream s;
    ASSERT_TRUE(s.LoadText(c.text)) << c.name;
    c.breakIt(s);
    EXPECT_TRUE(s.Failed()) << c.name;
    EXPECT_EQ(s.ReadInt32(), 0) << c.name;
    EXPECT_EQ(s.ReadDouble(), 0.0) << c.name;
    EXPECT_EQ(s.ReadUInt64(), 0u) << c.name;
    EXPECT_FALSE(s.ReadBool()) << c.name;
    LcUStringA text;
    EXPECT_FALSE(s.ReadText(text)) << c.name;
    EXPECT_STREQ(text.Get(), "") << c.name;
    EXPECT_EQ(s.EnterArray(), 0) << c.name;
    EXPECT_FALSE(s.FindKey("a")) << c.name;
    s.Clear();
    EXPECT_FALSE(s.Failed()) << c.name;
  }
}

TEST(LcUJsonStream, DepthCountersAfterAFailure) {
  LcUJsonStream s;
  ASSERT_TRUE(s.LoadText("[[1]]"));
  s.EnterArray();
  s.EnterObject();  // fails, still counted
  EXPECT_TRUE(s.Failed());
  EXPECT_EQ(s.ObjectDepth(), 1);
  s.EnterObject();
  EXPECT_EQ(s.ObjectDepth(), 2);
  s.GuardedLeaveObject();
  EXPECT_EQ(s.ObjectDepth(), 2);
  s.LeaveObject();
  EXPECT_EQ(s.ObjectDepth(), 1);
  s.GuardedLeaveArray();
  EXPECT_EQ(s.ArrayDepth(), 1);
  s.LeaveArray();
  EXPECT_EQ(s.ArrayDepth(), 0);
  // Begin counts nothing once failed.
  s.BeginArray();
  s.BeginObject();
  EXPECT_EQ(s.ArrayDepth(), 0);
  EXPECT_EQ(s.ObjectDepth(), 1);
  // Clear zeroes the object depth and leaves the array depth.
  s.Clear();
  s.BeginArray();
  s.Clear();
  EXPECT_EQ(s.ObjectDepth(), 0);
  EXPECT_EQ(s.ArrayDepth(), 1);
}

TEST(LcUJsonStream, LoadTextWantsAContainer) {
  LcUJsonStream s;
  EXPECT_TRUE(s.LoadText(" []"));
  EXPECT_EQ(s.EnterArray(), 0);
  EXPECT_TRUE(s.LoadText("{}"));
  for (const char* text : {"12", "\"text\"", "true", "", "[1,", "nonsense"}) {
    EXPECT_FALSE(s.LoadText(text)) << text;
    EXPECT_TRUE(s.Failed()) << text;
    EXPECT_EQ(s.Root(), nullptr) << text;
  }
  EXPECT_FALSE(s.LoadText(nullptr));
}

TEST(LcUJsonStream, WritesWithNowhereToGoFail) {
  LcUJsonStream noFrame;
  noFrame.WriteInt32(1);
  EXPECT_TRUE(noFrame.Failed());
  EXPECT_EQ(Printed(noFrame), "<false>");

  LcUJsonStream twoRoots;
  twoRoots.BeginArray();
  twoRoots.LeaveArray();
  twoRoots.BeginArray();
  EXPECT_TRUE(twoRoots.Failed());
  EXPECT_EQ(Printed(twoRoots), "<false>");

  LcUJsonStream failed;
  failed.BeginArray();
  failed.WriteInt32(1);
  failed.LeaveArray();
  failed.ReadInt32();
  failed.SetKey("ignored");
  EXPECT_EQ(Printed(failed), "<false>");
  EXPECT_FALSE(failed.Finish());

  LcUJsonStream empty;
  EXPECT_EQ(Printed(empty), "<false>");
}

TEST(LcUJsonStream, SixtyFourBitValues) {
  LcUJsonStream s;
  ASSERT_TRUE(s.LoadText("[1e19,9007199254740993,-3.9,1e300,\"\\r\\n\\t\\u000b\\f 42abc\",\"+7\",\"-5\"]"));
  s.EnterArray();
  EXPECT_EQ(s.ReadUInt64(), 10000000000000000000ull);
  EXPECT_EQ(s.ReadInt64(), 9007199254740992ll);
  EXPECT_EQ(s.ReadInt64(), -3);
  EXPECT_EQ(s.ReadInt64(), INT64_MIN);
  EXPECT_EQ(s.ReadInt64Text(), 42);
  EXPECT_EQ(s.ReadUInt64Text(), 7u);
  EXPECT_EQ(s.ReadInt64Text(), -5);
  EXPECT_FALSE(s.Failed());
}

TEST(LcUJsonStream, NodesAreGivenBack) {
  SerialTesting::HookCounter::Install();
  {
    LcUJsonStream s;
    WriteDescription(s);
    LcUJsonStream r;
    r.LoadText(kDescription);
    r.EnterObject();
    r.FindKey("items");
    r.EnterArray();
  }
  EXPECT_GT(SerialTesting::HookCounter::allocations, 20u);
  EXPECT_EQ(SerialTesting::HookCounter::releases, SerialTesting::HookCounter::allocations);
  SerialTesting::HookCounter::Uninstall();
}
