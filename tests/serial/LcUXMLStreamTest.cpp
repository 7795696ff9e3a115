#include <gtest/gtest.h>

#include <string>

#include "serial/LcUData.h"
#include "serial/LcUName.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLStream.h"

// One table of cases for whichever XML document the platform has.
namespace {
class XMLTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    LcUXMLDOMStream::Initialize();
    LcUData::Initialize();
  }
  static void TearDownTestSuite() {
    LcUData::Terminate();
    LcUXMLDOMStream::Terminate();
  }
  void SetUp() override { previous = LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get()); }
  void TearDown() override { LcUXMLDOMStream::SetProvider(previous); }
  LcUXMLDOMStreamProvider* previous = nullptr;
};

std::string Narrow(const LcUString& s) {
  LcUStringA n;
  LcUString::UTF16ToUTF8(s.Get() ? s.Get() : u"", n, true);
  return n.Get() ? n.Get() : "";
}

LcUString Wide(const char* s) {
  LcUString w;
  LcUString::UTF8ToUTF16(s, -1, w);
  return w;
}

// What `body` writes, as UTF-8 text.
template <typename F>
std::string Written(F body, int32_t version = 441) {
  LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateWriteStream(nullptr, version, 0, 0);
  EXPECT_NE(nullptr, stream);
  if (!stream) return "";
  EXPECT_EQ(1, stream->IsWriting());
  body(*stream);
  LcUStringA text;
  EXPECT_TRUE(stream->Save(text));
  LcUXMLDOMStream::DestroyStream(stream);
  return text.Get() ? text.Get() : "";
}

template <typename F>
void Read(const std::string& text, F body) {
  LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(Wide(text.c_str()).Get(), 0);
  ASSERT_NE(nullptr, stream) << text;
  EXPECT_EQ(0, stream->IsWriting());
  body(*stream);
  LcUXMLDOMStream::DestroyStream(stream);
}

TEST_F(XMLTest, ElementsAttributesAndTextRoundTrip) {
  const char* const awkward = "a & b < c > d \" e ' f";
  std::string text = Written([&](LcUXMLDOMStream& s) {
    EXPECT_TRUE(s.BeginElement("root", 0));
    LcUStringA value(awkward);
    EXPECT_TRUE(s.NarrowAttribute("odd", value));
    int32_t number = -17;
    EXPECT_TRUE(s.IntAttribute("number", number));
    for (int i = 0; i < 3; ++i) {
      EXPECT_TRUE(s.BeginElement("item", 0));
      int32_t index = i;
      EXPECT_TRUE(s.IntAttribute("index", index));
      LcUString content = Wide(i == 1 ? "second <text> & more" : "plain \xc3\xa9");
      EXPECT_TRUE(s.ElementText(content));
      EXPECT_TRUE(s.EndElement("item"));
    }
    EXPECT_TRUE(s.EndElement("root"));
  });
  Read(text, [&](LcUXMLDOMStream& s) {
    LcUStringA name;
    EXPECT_TRUE(s.NextChildName(name));
    EXPECT_STREQ("root", name.Get());
    ASSERT_TRUE(s.BeginElement("root", 0));
    LcUStringA value;
    EXPECT_TRUE(s.NarrowAttribute("odd", value));
    EXPECT_STREQ(awkward, value.Get());
    int32_t number = 0;
    EXPECT_TRUE(s.IntAttribute("number", number));
    EXPECT_EQ(-17, number);
    EXPECT_FALSE(s.IntAttribute("absent", number));
    EXPECT_TRUE(s.IntAttributeWithDefault("absent", number, 9));
    EXPECT_EQ(9, number);
    LcUString dflt;
    EXPECT_TRUE(s.StringAttribute("absent", dflt, u"fallback"));
    EXPECT_EQ("fallback", Narrow(dflt));
    for (int i = 0; i < 3; ++i) {
      ASSERT_TRUE(s.BeginElement("item", 0)) << i;
      int32_t index = -1;
      EXPECT_TRUE(s.IntAttribute("index", index));
      EXPECT_EQ(i, index);
      LcUString content;
      EXPECT_TRUE(s.ElementText(content));
      EXPECT_EQ(i == 1 ? "second <text> & more" : "plain \xc3\xa9", Narrow(content));
      EXPECT_TRUE(s.EndElement("item"));
    }
    EXPECT_FALSE(s.BeginElement("item", 0));
    EXPECT_TRUE(s.EndElement("root"));
  });
}

TEST_F(XMLTest, DatesTimesAndNames) {
  int64_t date = -86400 * 365 - 1;  // 1968/12/31 23:59:59
  int32_t seconds = -3725;
  LcUName* name = new LcUName("the.key", u"User text");
  std::string text = Written([&](LcUXMLDOMStream& s) {
    s.BeginElement("root", 0);
    EXPECT_TRUE(LcUXMLStream::SerialiseDate(s, date, 0));
    EXPECT_TRUE(LcUXMLStream::SerialiseTime(s, seconds, 0));
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, name, 0));
    LcUName* none = nullptr;
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, none, 0));
    s.EndElement("root");
  });
  EXPECT_NE(std::string::npos, text.find("year=\"1968\""));
  Read(text, [&](LcUXMLDOMStream& s) {
    s.BeginElement("root", 0);
    int64_t readDate = 0;
    int32_t readSeconds = 0;
    LcUName* readName = nullptr;
    EXPECT_TRUE(LcUXMLStream::SerialiseDate(s, readDate, 0));
    EXPECT_EQ(date, readDate);
    EXPECT_TRUE(LcUXMLStream::SerialiseTime(s, readSeconds, 0));
    EXPECT_EQ(seconds, readSeconds);
    LcUNameTable* table = new LcUNameTable;
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, readName, 0, table));
    ASSERT_NE(nullptr, readName);
    EXPECT_TRUE(LcUName::Equal(name, readName));
    readName->Release();
    table->Release();
  });
  // A date with one attribute missing leaves the value as it was.
  Read("<date year=\"2001\" month=\"2\" day=\"3\" hour=\"4\" minute=\"5\"/>", [](LcUXMLDOMStream& s) {
    int64_t kept = 12345;
    EXPECT_FALSE(LcUXMLStream::SerialiseDate(s, kept, 0));
    EXPECT_EQ(12345, kept);
  });
  name->Release();
}

TEST_F(XMLTest, DataElementsOfEveryTag) {
  LcUData values[11];
  values[0].SetFloat(2.25);
  values[1].SetInt32(-7);
  values[2].SetBool(true);
  values[3].SetWString(u"w & <s>");
  values[4].SetTime(-100);
  values[5].SetFloat(0.5, LcUData::eLINEAR);
  values[6].SetString("narrow");
  values[7].SetFloat(1e-9, LcUData::eAREA);  // "%f" keeps six decimals
  LcUName* name = new LcUName("k", u"User");
  values[8].SetName(name);
  values[9].SetName(name);
  name->Release();
  for (int32_t version : {90, 441}) {
    std::string text = Written([&](LcUXMLDOMStream& s) {
      s.BeginElement("values", 0);
      for (int i = 0; i < 10; ++i) EXPECT_TRUE(values[i].SerialiseXML(s)) << i;
      s.EndElement("values");
    }, version);
    Read(text, [&](LcUXMLDOMStream& s) {
      s.version = version;
      s.BeginElement("values", 0);
      LcUNameTable* table = new LcUNameTable;
      for (int i = 0; i < 10; ++i) {
        LcUData back;
        EXPECT_TRUE(back.SerialiseXML(s, table)) << i;
        if (i == 7) {
          EXPECT_EQ(0.0, back.GetFloat());
          EXPECT_EQ(LcUData::eAREA, back.GetTag());
        } else {
          EXPECT_TRUE(LcUData::Equal(values[i], back)) << i << " v" << version << "\n" << text;
        }
      }
      EXPECT_EQ(values[8].GetName() != nullptr, true);
      table->Release();
    });
  }
}

TEST_F(XMLTest, TypeWordsThatMiss) {
  struct Row {
    const char* text;
    int32_t code;
    const char* message;
  } rows[] = {{"<data>5</data>", 17, "Enum serialisation error: attribute \"type\" was not found."},
              {"<data type=\"complex\">5</data>", 15, "Enum serialisation error: (\"type\") \"complex\" is unrecognised."}};
  for (const Row& row : rows) {
    Read(row.text, [&](LcUXMLDOMStream& s) {
      LcUData d;
      d.SetInt32(3);
      EXPECT_FALSE(d.SerialiseXML(s));
      EXPECT_TRUE(d.IsEmpty());
      EXPECT_EQ(row.code, s.errorCode);
      EXPECT_EQ(0u, Narrow(s.errorText).find(row.message)) << Narrow(s.errorText);
    });
  }
  Written([](LcUXMLDOMStream& s) {
    LcUData vector;
    vector.SetVector3(1, 2, 3);
    EXPECT_FALSE(vector.SerialiseXML(s));
    EXPECT_EQ(16, s.errorCode);
    EXPECT_EQ(0u, Narrow(s.errorText).find("Enum serialisation error: (\"type\") 12 is unrecognised. ("));
  });
}

TEST_F(XMLTest, TheFirstErrorStays) {
  Read("<a><b/></a>", [](LcUXMLDOMStream& s) {
    s.BeginElement("a", 0);
    s.BeginElement("b", 0);
    LcUXMLStream::SetError(s, 15, u"first");
    LcUXMLStream::SetError(s, 16, u"second");
    EXPECT_EQ(15, s.errorCode);
    EXPECT_EQ("first (/a/b)", Narrow(s.errorText));
    LcUXMLStream::SetError(s, 0, nullptr);
    EXPECT_EQ(0, s.errorCode);
    EXPECT_TRUE(s.errorText.IsEmpty());
  });
  EXPECT_EQ(nullptr, LcUXMLDOMStream::CreateReadStream(u"<unclosed", 0));
}

TEST_F(XMLTest, WithoutAProviderNothingIsMade) {
  LcUXMLDOMStream::SetProvider(nullptr);
  EXPECT_EQ(nullptr, LcUXMLDOMStream::CreateReadStream(u"<a/>", 0));
  EXPECT_EQ(nullptr, LcUXMLDOMStream::CreateWriteStream(nullptr, 441, 0, 0));
  LcUXMLDOMStream::DestroyStream(nullptr);
}

TEST(XMLStream, SchemaNamesAndVersions) {
  struct Row {
    int32_t version;
    const char16_t* name;
  } rows[] = {{49, u""}, {50, u"tw-exchange-4.0"}, {75, u"tw-exchange-4.0.1"}, {106, u"tw-exchange-7.0"},
              {440, u"tw-exchange-11.0"}, {1000, u"tw-exchange-12.0"}};
  for (const Row& row : rows) {
    LcUString name;
    EXPECT_EQ(row.version >= 50, LcUXMLStream::GetSchemaName(row.version, name));
    EXPECT_TRUE(LcUString::Equal(row.name, name.Get())) << row.version;
  }
  LcUString url, name;
  LcUXMLStream::GetSchemaURL(u"tw-exchange-7.0", url);
  EXPECT_EQ(std::u16string(u"http://download.hollimar.com/us/tarnwicket/schemas/tw-exchange-7.0.xsd"), url.Get());
  EXPECT_EQ(106, LcUXMLStream::GetVersionFromSchemaURL(url.Get()));
  LcUXMLStream::GetSchemaURL(u"tw-exchange-6.0", url);
  EXPECT_EQ(std::u16string(u"http://www.tarnwicket.com/schemas/tw-exchange-6.0.xsd"), url.Get());
  EXPECT_TRUE(LcUXMLStream::GetSchemaNameFromURL(url.Get(), name));
  EXPECT_EQ(std::u16string(u"tw-exchange-6.0"), name.Get());
  EXPECT_EQ(-1, LcUXMLStream::GetVersionFromSchemaURL(u"http://example.net/schemas/tw-exchange-6.0.xsd"));
  EXPECT_FALSE(LcUXMLStream::GetSchemaNameFromURL(u"http://www.tarnwicket.com/schemas/.xsd", name));
  LcUXMLStream::GetSchemaURL(nullptr, url);
  EXPECT_TRUE(url.IsEmpty());
}

TEST(XMLStream, EscapesInOrder) {
  struct Row {
    const char* text;
    const char* escaped;
  } rows[] = {{"a&b", "a&amp;b"},
              {"&amp;", "&amp;amp;"},
              {"<\"'>", "&lt;&quot;&apos;&gt;"},
              {"a<b<c>>\"\"''", "a&lt;b&lt;c&gt;&gt;&quot;&quot;&apos;&apos;"},
              {"one\r\ntwo\rthree\n", "one\ntwo\rthree\n"}};
  for (const Row& row : rows) {
    LcUStringA narrow(row.text);
    LcUXMLStream::EscapeText(narrow);
    EXPECT_STREQ(row.escaped, narrow.Get());
    LcUString wide = Wide(row.text);
    LcUXMLStream::EscapeText(wide);
    EXPECT_EQ(row.escaped, Narrow(wide));
    LcUStringA utf8;
    LcUXMLStream::EscapeToUTF8(Wide(row.text).Get(), utf8);
    EXPECT_STREQ(row.escaped, utf8.Get());
  }
  LcUStringA empty("x");
  LcUXMLStream::EscapeToUTF8(static_cast<const char16_t*>(nullptr), empty);
  EXPECT_TRUE(empty.IsEmpty());
}
}  // namespace

namespace {
TEST_F(XMLTest, ANameOfEitherFaceAloneReadsBack) {
  LcUName* keyOnly = new LcUName("only.key", u"");
  LcUName* userOnly = new LcUName(u"Only user");
  std::string text = Written([&](LcUXMLDOMStream& s) {
    s.BeginElement("root", 0);
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, keyOnly, 0));
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, userOnly, 0));
    s.EndElement("root");
  });
  Read(text, [&](LcUXMLDOMStream& s) {
    s.BeginElement("root", 0);
    LcUName* first = nullptr;
    LcUName* second = nullptr;
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, first, 0));
    EXPECT_TRUE(LcUXMLStream::SerialiseName(s, second, 0));
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_STREQ("only.key", first->GetInternalName());
    EXPECT_EQ(nullptr, second->GetInternalName());
    EXPECT_TRUE(LcUString::Equal(u"Only user", second->GetUserName()));
    first->Release();
    second->Release();
  });
  keyOnly->Release();
  userOnly->Release();
}
}  // namespace
