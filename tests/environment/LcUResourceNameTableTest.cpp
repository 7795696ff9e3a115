#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "ResourceTest.h"

using namespace EnvironmentTesting;

namespace {
struct Case {
  const char* what;
  std::string text;
  const char* endToken;
  // Key and expected text; "<absent>" for a key that mustn't be there.
  std::vector<std::pair<const char*, std::string>> pairs;
  const char* error;  // null when the table reads
  int32_t line;       // the error's line, or the final line on success
};

// Names the case in test output instead of dumping its bytes.
void PrintTo(const Case& c, std::ostream* out) {
  *out << c.what;
}

const std::string kLong = "a=" + std::string(5200, 'x') + "\n";

const std::vector<Case> kCases = {
    {"pair", "a=b\n", nullptr, {{"a", "b"}}, nullptr, 1},
    {"comments and blank lines", "# c=d\na=b\n\n \t \n# e\n", nullptr, {{"a", "b"}, {"# c", "<absent>"}}, nullptr, 5},
    {"indented hash is a name", "  #x=1\n", nullptr, {{"  #x", "1"}}, nullptr, 1},
    {"blank before = joins the name", "name =value\n", nullptr, {{"name ", "value"}, {"name", "<absent>"}}, nullptr,
     1},
    {"blanks after = and at the end are cut", "a=\t  v w\t \r\n", nullptr, {{"a", "v w"}}, nullptr, 1},
    {"later definition wins", "a=1\na=2\n", nullptr, {{"a", "2"}}, nullptr, 2},
    {"blank brace is a value", "name= {\n", nullptr, {{"name", "{"}}, nullptr, 1},
    {"value on the next line", "a=\n  # spaced value \t\n", nullptr, {{"a", "# spaced value"}}, nullptr, 2},
    {"empty next line", "a=\n\t\nb=c\n", nullptr, {{"a", "<absent>"}},
     "Expected user name. Zero-length string found instead.", 2},
    {"block keeps lines as they stand", "a={\nl1\n  # l2 \n\n}rest\nb=c\n", nullptr,
     {{"a", "l1\n  # l2 \n\n"}, {"b", "c"}}, nullptr, 6},
    {"empty block", "a={\n}\n", nullptr, {{"a", ""}}, nullptr, 2},
    {"block without end", "a={\nl1\n", nullptr, {{"a", "<absent>"}},
     "Unexpected end of file. Expected user name or user name block.", 3},
    {"value line missing", "a=b\nc=\n", nullptr, {{"a", "b"}, {"c", "<absent>"}},
     "Unexpected end of file. Expected user name or user name block.", 3},
    {"options with trailing blanks", "$utf8  \na=\xC3\xA9\n$mbcs\n", nullptr, {{"a", "\xC3\xA9"}}, nullptr, 3},
    {"indented option", " $utf8\n", nullptr, {}, "Expected '=' after internal name.", 1},
    {"unknown option", "a=b\n$utf16\nc=d\n", nullptr, {{"a", "b"}, {"c", "<absent>"}}, "Unknown option.", 2},
    {"no equals", "a=b\nc\nd=e\n", nullptr, {{"a", "b"}, {"d", "<absent>"}}, "Expected '=' after internal name.", 2},
    {"marker line", "\xEF\xBB\xBF\na=\xC3\xA9\n", nullptr, {{"a", "\xC3\xA9"}}, nullptr, 2},
    {"marker with comment", "\xEF\xBB\xBF# note\na=b\n", nullptr, {{"a", "b"}}, nullptr, 2},
    {"marker followed by text", "\xEF\xBB\xBF" "a=b\n", nullptr, {}, "Internal name is not 7-bit ASCII.", 1},
    {"marker only counts on line 1", "a=b\n\xEF\xBB\xBF\n", nullptr, {}, "Expected '=' after internal name.", 2},
    {"end token stops", "a=1\nEND\nb=2\n", "END", {{"a", "1"}, {"b", "<absent>"}}, nullptr, 2},
    {"end token with trailing blanks", "a=1\nEND \n", "END", {{"a", "1"}}, nullptr, 2},
    {"end token missing", "a=1\n", "END", {{"a", "1"}}, "Unexpected end of file. Expected end of name table token.",
     2},
    {"non-ASCII name", "\xC3\xA9=x\n", nullptr, {}, "Internal name is not 7-bit ASCII.", 1},
    {"bad UTF-8 value", "$utf8\na=\xFF\n", nullptr, {{"a", "<absent>"}}, "Failed to read user name.", 2},
    {"bad UTF-8 value line", "$utf8\na=\n\xFF\n", nullptr, {}, "Failed to read user name.", 3},
    {"bad UTF-8 in block", "$utf8\na={\nok\n\xFF\n}\n", nullptr, {{"a", "<absent>"}},
     "Failed to read user name inside user name block.", 4},
    {"unclosed tag", "a=x${b\n", nullptr, {{"a", "<absent>"}}, "Malformed tag in user name.", 1},
    {"empty tag", "a=b\nc=${}\n", nullptr, {{"a", "b"}, {"c", "<absent>"}}, "Malformed tag in user name.", 2},
    {"nosub keeps tags", "abcnosub=${x}\n", nullptr, {{"abcnosub", "${x}"}}, nullptr, 1},
    {"rescan expands inserted tags", "c=z\nb=<${c}>\na=${b}${b}\n", nullptr, {{"a", "<z><z>"}}, nullptr, 3},
    {"forward reference in one table", "a=${b}\nb=text\n", nullptr, {{"a", "text"}}, nullptr, 2},
    {"missing key keeps the literal", "a=${b}\n", nullptr, {{"a", "${b}"}}, nullptr, 1},
    {"partial substitution", "b=B\na=x${b}y${c}\n", nullptr, {{"a", "xBy${c}"}}, nullptr, 2},
    {"long line goes on as a new line", kLong, nullptr, {}, "Expected '=' after internal name.", 2},
};

class LcUResourceNameTable : public ResourceTest, public ::testing::WithParamInterface<Case> {};

TEST_P(LcUResourceNameTable, ReadsPairsOrReportsTheLine) {
  const Case& c = GetParam();
  LcUResourceParseState state;
  bool read = ReadTable(c.text, c.endToken, state);
  EXPECT_EQ(read, c.error == nullptr);
  EXPECT_EQ(state.errorText.Get() ? std::string(state.errorText.Get()) : "", c.error ? c.error : "");
  EXPECT_EQ(c.error ? state.errorLine : state.line, c.line);
  if (!c.error) {
    EXPECT_EQ(state.errorLine, 0);
  }
  for (const auto& [key, text] : c.pairs) EXPECT_EQ(Text(key), text) << key;
}

INSTANTIATE_TEST_SUITE_P(Grammar, LcUResourceNameTable, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<Case>& info) {
                           std::string name = info.param.what;
                           for (char& ch : name)
                             if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
                           return name;
                         });

class LcUResourceTables : public ResourceTest {
protected:
  LcUString Table(const char16_t* name, const std::string& bytes) {
    LcUString path = In(name);
    EXPECT_TRUE(WriteFile(path, bytes));
    return path;
  }
  // What termination adds to the log.
  static std::string TerminationReport() {
    size_t before = LogText().size();
    LcUResource::Terminate();
    std::string report = LogText().substr(before);
    LcUResource::Initialize();
    return report;
  }
};

TEST_F(LcUResourceTables, LegacyAndUTF8TablesGiveTheSamePairs) {
  const char16_t* text = u"Gr\u00FC\u00DFe \u00A9 caf\u00E9";
  LcUStringA legacy, utf8;
  ASSERT_TRUE(LcUString::WideToMultiByte(text, legacy));
  ASSERT_TRUE(LcUString::UTF16ToUTF8(text, utf8, true));
  LcUResourceParseState first, second;
  ASSERT_TRUE(ReadTable(std::string("$mbcs\nk1=") + legacy.Get() + "\nb1={\n" + legacy.Get() + "\n}\n", nullptr,
                        first));
  ASSERT_TRUE(ReadTable(std::string("$utf8\nk2=") + utf8.Get() + "\nb2={\n" + utf8.Get() + "\n}\n", nullptr,
                        second));
  EXPECT_EQ(Narrow(LcUString(LcUResource::FindString("k1", u""))), utf8.Get());
  EXPECT_EQ(Text("k1"), Text("k2"));
  EXPECT_EQ(Text("b1"), Text("b2"));
}

// A name file is text: CR LF ends a line and Ctrl-Z the file, on Linux too.
TEST_F(LcUResourceTables, AWindowsTextFileLoadsAsItsPlainTwin) {
  const std::string plain = "\xEF\xBB\xBF\n# caf\xC3\xA9\nk=caf\xC3\xA9\nb={\none\ntwo\n}\n";
  std::string windows;
  for (char c : plain) windows += c == '\n' ? std::string("\r\n") : std::string(1, c);
  windows += "\x1A" "after=the end\n";
  ASSERT_TRUE(LcUResource::LoadNameFile(Table(u"windows.name", windows).Get(), "w."));
  ASSERT_TRUE(LcUResource::LoadNameFile(Table(u"plain.name", plain).Get(), "p."));
  EXPECT_EQ(Text("p.k"), "caf\xC3\xA9");
  EXPECT_EQ(Text("w.k"), Text("p.k"));
  EXPECT_EQ(Text("w.b"), "one\ntwo\n");
  EXPECT_EQ(Text("w.after"), "<absent>");
  EXPECT_TRUE(reports().empty());
}

TEST_F(LcUResourceTables, PrefixGoesBeforeEveryName) {
  LcUResourceParseState state;
  ASSERT_TRUE(ReadTable("a=${p.b}\nb=B\n", nullptr, state, "p."));
  EXPECT_EQ(Text("p.a"), "B");
  EXPECT_EQ(Text("a"), "<absent>");
  LcUResourceParseState bad;
  EXPECT_FALSE(ReadTable("a=1\n", nullptr, bad, "\xC3\xA9"));
  EXPECT_STREQ(bad.errorText.Get(), "Internal name is not 7-bit ASCII.");
}

TEST_F(LcUResourceTables, EmbeddedTableLeavesTheRestOfTheStream) {
  LcUString path = Table(u"mixed.txt", "a=1\n--end--\nafter\n");
  LcUSysFileHandle file;
  ASSERT_TRUE(file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                        LcUSysFileHandle::eMODE_TEXT, LcUSysFileHandle::eDENY_NONE, 0, 0));
  LcUResourceParseState state;
  ASSERT_TRUE(LcUResource::ReadNameTable(file.GetStream(), "--end--", state, nullptr));
  char rest[16] = {};
  ASSERT_NE(std::fgets(rest, sizeof rest, file.GetStream()), nullptr);
  EXPECT_STREQ(rest, "after\n");
}

TEST_F(LcUResourceTables, ForwardReferenceResolvesAfterTheSecondFile) {
  EXPECT_TRUE(LcUResource::LoadNameFile(Table(u"one.name", "a=${b}\nc=${d}\n").Get(), nullptr));
  EXPECT_EQ(Text("a"), "${b}");
  EXPECT_TRUE(LcUResource::LoadNameFile(Table(u"two.name", "b=text\n").Get(), nullptr));
  EXPECT_EQ(Text("a"), "text");
  EXPECT_EQ(Text("c"), "${d}");
  EXPECT_EQ(TerminationReport(), "1 strings pending replacement:\n    c\n");
}

TEST_F(LcUResourceTables, ChainResolvesWhenItsLastLinkArrives) {
  LcUResource::LoadNameFile(Table(u"one.name", "a=<${b}>\n").Get(), nullptr);
  LcUResource::LoadNameFile(Table(u"two.name", "b=[${c}]\n").Get(), nullptr);
  EXPECT_EQ(Text("a"), "<[${c}]>") << "the pass takes b's text as it stands";
  EXPECT_EQ(Text("b"), "[${c}]");
  EXPECT_TRUE(LcUResource::DefineString("c", u"z"));
  EXPECT_EQ(Text("a"), "<[z]>");
  EXPECT_EQ(Text("b"), "[z]");
  EXPECT_EQ(TerminationReport(), "");
}

TEST_F(LcUResourceTables, SyntaxErrorIsReportedWithPathAndLine) {
  LcUString path = Table(u"bad.name", "a=1\nb\n");
  EXPECT_FALSE(LcUResource::LoadNameFile(path.Get(), nullptr));
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_NE(reports()[0].find("Syntax error in " + Narrow(path) + " at line 2 : Expected '=' after internal name."),
            std::string::npos)
      << reports()[0];
  EXPECT_EQ(severities()[0], int(LcUError::eERROR));
  EXPECT_EQ(Text("a"), "1") << "pairs read before the error stay";
  EXPECT_FALSE(LcUResource::LoadNameFile(In(u"missing.name").Get(), nullptr));
  EXPECT_EQ(reports().size(), 1u) << "a file that can't be opened is not reported";
}

TEST_F(LcUResourceTables, MalformedTagWithoutStateIsReportedAndKept) {
  EXPECT_TRUE(LcUResource::DefineString("m", u"x${y"));
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_NE(reports()[0].find("Malformed string: m"), std::string::npos) << reports()[0];
  EXPECT_EQ(Text("m"), "x${y");
  LcUResource::DefineString("k", u"K");
  EXPECT_TRUE(LcUResource::DefineString("n", u"${k}${"));
  EXPECT_EQ(Text("n"), "K${") << "kept as far as it was replaced";
}

TEST_F(LcUResourceTables, SelfReferenceEndsWithAReport) {
  LcUResource::DefineString("a", u"${a}");
  EXPECT_EQ(Text("a"), "${a}");
  LcUResource::DefineString("b", u"x");
  EXPECT_FALSE(reports().empty()) << "the pending pass gave up on a";
  // A value that grows around its own tag, and a cycle through another name.
  reports().clear();
  LcUResourceParseState state;
  EXPECT_TRUE(ReadTable("g=x${g}\n", nullptr, state));
  EXPECT_FALSE(reports().empty()) << "the pending pass gave up on g";
  reports().clear();
  LcUResource::DefineString("c", u"${d}");
  LcUResource::DefineString("d", u"<${c}>");
  EXPECT_FALSE(reports().empty()) << "the cycle of c and d ended with a report";
}

// Only a tag inside its own value stops substitution: many tags and long texts are fine.
TEST_F(LcUResourceTables, LargeSubstitutionsLoad) {
  std::string manyTags, longTags;
  for (int i = 0; i < 1100; ++i) manyTags += "${o}";
  for (int i = 0; i < 100; ++i) longTags += "${L}";
  LcUResourceParseState state;
  ASSERT_TRUE(ReadTable("o=1\nL=" + std::string(2700, 'L') + "\nmany=" + manyTags + "\nhuge=" + longTags +
                            "\nnested=${many}${many}\n",
                        nullptr, state))
      << (state.errorText.Get() ? state.errorText.Get() : "");
  EXPECT_EQ(Text("many"), std::string(1100, '1'));
  EXPECT_EQ(Text("huge"), std::string(270000, 'L'));
  EXPECT_EQ(Text("nested"), std::string(2200, '1'));
  EXPECT_TRUE(reports().empty());
}
}  // namespace
