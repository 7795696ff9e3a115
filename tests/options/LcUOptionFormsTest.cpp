#include "OptionTesting.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"

namespace OptionTesting {
namespace {
using EnvironmentTesting::Wide;
constexpr uint32_t D = LcUOptionSet::eDEFAULT;

// The XML and object-stream forms of free-standing sets.
class LcUOptionFormsTest : public OptionTest {
protected:
  void SetUp() override {
    OptionTest::SetUp();
    LcUXMLDOMStream::Initialize();
    LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get());
  }
  void TearDown() override {
    for (LcUOptionSet* set : held) set->Release();
    LcUXMLDOMStream::SetProvider(nullptr);
    LcUXMLDOMStream::Terminate();
    OptionTest::TearDown();
  }
  LcUExOptionSet* Hold(LcUExOptionSet* set) {
    if (set) {
      set->AddRef();
      held.push_back(set);
    }
    return set;
  }
  // "display" with a leaf of two states, a nested set, an array and a
  // transient set.
  LcUExOptionSet* Sample() {
    LcUExOptionSet* set = Hold(new LcUExOptionSet);
    set->name = "display";
    LcUOption::DefineInt32(set, "width", 640);
    LcUOption::DefineWideString(set, "title", u"T\u00eftle <&>");
    LcUOption::DefineFloat(set, "grid.step", 0.5);
    LcUExOptionSet* list = new LcUExOptionSet(LcUOptionSet::eARRAY);
    LcUOption::DefineInt32(list, "0", 1);
    LcUOption::DefineInt32(list, "1", 2);
    LcUOption::DefineSet(set, "recent", list);
    LcUExOptionSet* transient = new LcUExOptionSet(LcUOptionSet::eTRANSIENT);
    LcUOption::DefineInt32(transient, "x", 1);
    LcUOption::DefineSet(set, "session", transient);
    set->SetState(0, 0);
    set->SetState(1, D | 64);
    return set;
  }
  std::string WriteXML(LcUOptionSet* set) {
    LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateWriteStream(nullptr, 441, 0, 0);
    EXPECT_TRUE(LcUOption::WriteToXML(set, *stream));
    LcUStringA text;
    EXPECT_TRUE(stream->Save(text));
    LcUXMLDOMStream::DestroyStream(stream);
    return text.Get() ? text.Get() : "";
  }
  LcUExOptionSet* ReadXML(const std::string& text) {
    LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(Wide(text).Get(), 0);
    EXPECT_NE(stream, nullptr) << text;
    if (!stream) return nullptr;
    LcUExOptionSet* set = Hold(LcUOption::ReadFromXML(*stream));
    LcUXMLDOMStream::DestroyStream(stream);
    return set;
  }
  std::vector<LcUOptionSet*> held;
};

TEST_F(LcUOptionFormsTest, XMLElementsAndAttributesRoundTrip) {
  std::string text = WriteXML(Sample());
  for (const char* piece : {"<optionset name=\"display\">", "<option name=\"width\">", "<option name=\"title\" flags=\"96\">",
                            "<optionset name=\"grid\">", "<optionarray name=\"recent\">"})
    EXPECT_NE(text.find(piece), std::string::npos) << piece << "\n" << text;
  EXPECT_EQ(text.find("session"), std::string::npos);
  EXPECT_EQ(text.find("class="), std::string::npos);
  LcUExOptionSet* read = ReadXML(text);
  ASSERT_NE(read, nullptr);
  EXPECT_STREQ(read->name.Get(), "display");
  EXPECT_EQ(Shape(read), "width=640,title=T\xc3\xaftle <&>,grid{step=0.5000000000000000000},recent{0=1,1=2}");
  EXPECT_EQ(read->GetState(0), 0u);
  EXPECT_EQ(read->GetState(1), D | 64);
  EXPECT_EQ(read->GetDefineFlags(0), uint32_t(LcUOptionSet::ePLAIN_TEXT_KEY));
  LcUOptionSet* recent = LcUOption::GetSet(read, "recent");
  EXPECT_TRUE(recent->IsArray());
  // Elements of an array lose the default bit as they join it.
  EXPECT_EQ(recent->GetState(0) & D, 0u);
}

TEST_F(LcUOptionFormsTest, XMLReadingTakesTheFirstSetAndSkipsStrangers) {
  std::string text =
      "<root><other><optionset name=\"hidden\"/></other>"
      "<optionset name=\"first\"><unknown a=\"1\"><option name=\"no\"/></unknown>"
      "<option name=\"k\" class=\"kind\" flags=\"16\"><data type=\"int32\">5</data></option></optionset>"
      "<optionset name=\"second\"/></root>";
  LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(Wide(text).Get(), 0);
  ASSERT_NE(stream, nullptr);
  ASSERT_TRUE(stream->BeginElement("root", 0));
  LcUExOptionSet* read = Hold(LcUOption::ReadFromXML(*stream));
  LcUXMLDOMStream::DestroyStream(stream);
  ASSERT_NE(read, nullptr);
  EXPECT_STREQ(read->name.Get(), "first");
  EXPECT_EQ(Shape(read), "k=5");
  EXPECT_STREQ(read->GetClass(0), "kind");
  EXPECT_EQ(read->GetState(0), 16u);
  EXPECT_EQ(ReadXML("<root><nothing/></root>"), nullptr);
}

TEST_F(LcUOptionFormsTest, XMLFeedsSavedOptions) {
  ASSERT_TRUE(LcUOption::DefineInt32("display.width", 800));
  LcUExOptionSet* root = Hold(new LcUExOptionSet);
  LcUOption::DefineSet(root, "display", Sample());
  // Written as a user's change would be: not a default.
  LcUOption::GetSet(root, "display")->SetState(0, 0);
  std::string text = WriteXML(root);
  LcUOption::SetSavedOptions(ReadXML(text));
  EXPECT_EQ(LcUOption::GetInt32("display.width"), 640);
  EXPECT_FALSE(IsDefault("display.width"));
}

TEST_F(LcUOptionFormsTest, StreamFormRoundTripsInBinaryAndAscii) {
  for (bool ascii : {false, true}) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer);
    writer.ascii = ascii;
    ASSERT_TRUE(writer.WriteBegin());
    LcUOption::WriteToStream(Sample(), writer);
    ASSERT_TRUE(writer.WriteEnd());
    LcUStreamReader reader(&buffer);
    ASSERT_TRUE(reader.ReadBegin());
    LcUExOptionSet* read = Hold(LcUOption::ReadFromStream(reader));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(Shape(read), "width=640,title=T\xc3\xaftle <&>,grid{step=0.5000000000000000000},recent{0=1,1=2}")
        << ascii;
    EXPECT_TRUE(LcUOption::GetSet(read, "recent")->IsArray());
    EXPECT_EQ(read->GetState(1), 0u);
  }
}

TEST_F(LcUOptionFormsTest, StreamFormOfTransientAndEmptyValues) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  ASSERT_TRUE(writer.WriteBegin());
  LcUExOptionSet* transient = Hold(new LcUExOptionSet(LcUOptionSet::eTRANSIENT | LcUOptionSet::eALWAYS_VISIBLE));
  LcUOption::WriteToStream(transient, writer);
  // An empty leaf reads as a branch: what follows is taken for its set.
  LcUExOptionSet* blank = Hold(new LcUExOptionSet);
  LcUOption::DefineData(blank, "empty", LcUData());
  LcUOption::DefineInt32(blank, "after", 3);
  LcUOption::WriteToStream(blank, writer);
  ASSERT_TRUE(writer.WriteEnd());
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(reader.ReadBegin());
  EXPECT_EQ(LcUOption::ReadFromStream(reader), nullptr);
  LcUExOptionSet* read = Hold(LcUOption::ReadFromStream(reader));
  ASSERT_NE(read, nullptr);
  EXPECT_LE(read->GetCount(), 2);
  EXPECT_NE(reader.GetError(), 0);
}

TEST_F(LcUOptionFormsTest, TruncatedStreamsStopAtTheFirstError) {
  LcUStreamBuffer buffer;
  LcUStreamWriter writer(&buffer);
  ASSERT_TRUE(writer.WriteBegin());
  LcUOption::WriteToStream(Sample(), writer);
  ASSERT_TRUE(writer.WriteEnd());
  for (uint32_t cut = 0; cut < buffer.GetSize(); cut += 5) {
    LcUStreamBuffer part;
    ASSERT_TRUE(part.SetData(buffer.GetData(), cut, 1));
    LcUStreamReader reader(&part);
    reader.ReadBegin();
    LcUExOptionSet* read = Hold(LcUOption::ReadFromStream(reader));
    if (read) {
      EXPECT_LE(read->GetCount(), 5);
    }
  }
}
}  // namespace
}  // namespace OptionTesting
