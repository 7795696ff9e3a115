#include <gtest/gtest.h>

#include <cstdio>

#include "HostSimDefaultModel.h"
#include "HostSimModelReader.h"
#include "HostSimText.h"

namespace {
std::string Read(const std::string& text) {
  HostSimModel model;
  std::string error;
  return HostSimModelReader::Read(text, model, error) ? "ok" : error;
}
}  // namespace

TEST(HostSimModelReader, RefusesBadTextByLine) {
  const std::string assembly = "document C:\\a.gam assembly open\n";
  const struct {
    std::string text;
    const char* error;
  } cases[] = {
      {"frobnicate 1\n", "line 1: unknown statement \"frobnicate\""},
      {"# a comment\n\ndocument C:\\a.gpt\n", "line 3: document wants PATH part|assembly [open]"},
      {"document C:\\a.gpt widget\n", "line 1: document wants PATH part|assembly [open]"},
      {"document C:\\a.gpt part opened\n", "line 1: document wants PATH part|assembly [open]"},
      {"document \"\" part\n", "line 1: a document's path is empty"},
      {"document C:\\a.gpt part\ndocument c:\\A.GPT part\n", "line 2: the document \"c:\\A.GPT\" is already declared"},
      {"document \"C:\\a b.gpt part\n", "line 1: a quote is not closed"},
      {"view\n", "line 1: view before any document"},
      {"document C:\\a.gpt part\neye 1 2 3\n", "line 2: eye before any view"},
      {"document C:\\a.gpt part\nview\neye 1 2\n", "line 3: eye wants 3 values"},
      {"document C:\\a.gpt part\nview\neye 1 2 x\n", "line 3: \"x\" is not a number"},
      {"document C:\\a.gpt part\nview\nangle 1e999\n", "line 3: \"1e999\" is not a number"},
      {"document C:\\a.gpt part\nview\nperspective 1\n", "line 3: a flag is -1 or 0, not \"1\""},
      {"modeflag yes\n", "line 1: a flag is -1 or 0, not \"yes\""},
      {"occurrence A:1\n", "line 1: occurrence before any document"},
      {"document C:\\a.gpt part\noccurrence A:1\n", "line 2: a part has no occurrences"},
      {assembly + "occurrence A:1|B:1\n", "line 2: \"A:1|B:1\" comes before its parent \"A:1\""},
      {assembly + "occurrence A:1\noccurrence A:1\n", "line 3: the occurrence \"A:1\" is already declared"},
      {assembly + "occurrence A:1\noccurrence A:1||B:1\n", "line 3: an empty name in \"A:1||B:1\""},
      {assembly + "lod \"\xC3\x28\"\n", "line 2: not UTF-8 text"},
      {"document C:\\a.gpt part\nactive C:\\a.gpt\n", "line 2: \"C:\\a.gpt\" is not an open document of the model"},
      {assembly + "active C:\\b.gam\n", "line 2: \"C:\\b.gam\" is not an open document of the model"},
      {"fail Nope=0x80004005\n", "line 1: no role is named \"Nope\""},
  };
  for (const auto& c : cases) EXPECT_EQ(c.error, Read(c.text)) << c.text;
}

TEST(HostSimModelReader, ReadsDocumentsViewsAndOccurrences) {
  const char* text =
      "\xEF\xBB\xBF# spaces, quotes and Windows line ends\r\n"
      "document \"C:\\My Models\\B\xC3\xA9.gpt\" part\r\n"
      "  view\r\n"
      "  extents 20 10\r\n"
      "document C:\\A.gam assembly open\r\n"
      "designview \"Front view\"\r\n"
      "view\r\n"
      "view\r\n"
      "eye 1 -2.5 3e2\r\n"
      "perspective 0\r\n"
      "occurrence A:1\r\n"
      "occurrence A:1|B:1\r\n"
      "occurrence \"A:1|C 2:1\"\r\n"
      "modeflag 0\r\n";
  HostSimModel model;
  std::string error;
  ASSERT_TRUE(HostSimModelReader::Read(text, model, error)) << error;
  ASSERT_EQ(2u, model.documents.size());
  const HostSimModel::Document& part = *model.documents[0];
  EXPECT_EQ(u"C:\\My Models\\B\u00E9.gpt", part.path);
  EXPECT_FALSE(part.open);
  EXPECT_FALSE(part.definition.assembly);
  EXPECT_EQ(20, part.views[0].extents[0]);
  const HostSimModel::Document& assembly = *model.documents[1];
  EXPECT_TRUE(assembly.open);
  EXPECT_EQ(u"Front view", assembly.designView);
  EXPECT_EQ(u"", assembly.levelOfDetail);
  ASSERT_EQ(2u, assembly.views.size());
  EXPECT_EQ(-1, assembly.views[0].perspective);  // the defaults
  EXPECT_EQ(10, assembly.views[0].eye[2]);
  EXPECT_EQ(300, assembly.views[1].eye[2]);
  EXPECT_EQ(-2.5, assembly.views[1].eye[1]);
  EXPECT_EQ(0, assembly.views[1].perspective);
  const HostSimModel::Node* a = assembly.definition.Child(u"A:1");
  ASSERT_NE(nullptr, a);
  EXPECT_TRUE(a->assembly);
  ASSERT_NE(nullptr, a->Child(u"C 2:1"));
  EXPECT_FALSE(a->Child(u"B:1")->assembly);
  EXPECT_EQ(u"A:1|C 2:1", a->Child(u"C 2:1")->Path());
  // The first open document is active unless the model names one.
  EXPECT_EQ(&assembly, model.activeDocument);
  EXPECT_EQ(0, model.activeView);
  EXPECT_EQ(0, model.modeFlag);
}

TEST(HostSimModelReader, TheBuiltInModelHasTheDemosDocuments) {
  HostSimModel model;
  std::string error;
  ASSERT_TRUE(HostSimModelReader::Read(HostSimDefaultModel::kText, model, error)) << error;
  HostSimModel::Document* gearbox = model.Find(u"C:\\Models\\Gearbox.gam", false);
  HostSimModel::Document* pump = model.Find(u"c:\\models\\pump.gam", true);
  ASSERT_TRUE(gearbox && pump);
  EXPECT_TRUE(gearbox->open && !pump->open);
  EXPECT_TRUE(model.Find(u"C:\\Models\\Bracket.gpt", false)->open);
  EXPECT_EQ(gearbox, model.activeDocument);
  const HostSimModel::Node* gear = gearbox->definition.Child(u"Shaft:1")->Child(u"Gear:1");
  EXPECT_EQ(u"Shaft:1|Gear:1|Tooth:1", gear->Child(u"Tooth:1")->Path());
  EXPECT_FALSE(pump->designView.empty() || pump->levelOfDetail.empty());
}

TEST(HostSimModelReader, AFileThatCantBeReadIsNamedWithTheReason) {
  // A folder too: read as a stream it throws.
  for (const char* path : {"no-such-folder/model.txt", "."}) {
    HostSimModel model;
    std::string error;
    EXPECT_FALSE(HostSimModelReader::ReadFile(path, model, error));
    EXPECT_EQ(0u, error.find(std::string(path) + ": can't be read: ")) << error;
    EXPECT_GT(error.size(), std::string(path).size() + 16) << error;
  }
}
