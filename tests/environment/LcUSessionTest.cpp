#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "environment/LcUAppInfo.h"
#include "environment/LcURegistry.h"
#include "environment/LcUSession.h"
#include "environment/LcUSessionRecord.h"

using namespace EnvironmentTesting;

namespace {
// "\n" and "\r" shown, so that line ends can be told apart.
std::string Shown(const std::string& bytes) {
  std::string out;
  for (char c : bytes) {
    if (c == '\n')
      out += "\\n";
    else if (c == '\r')
      out += "\\r";
    else
      out += c;
  }
  return out;
}

std::string Render(const LcUSessionRecordList& records) {
  std::string out;
  static const char kHex[] = "0123456789abcdef";
  for (const LcUSessionRecord& record : records) {
    out += "{";
    for (const LcUSessionRecord::Pair& pair : record.GetPairs())
      out += Narrow(pair.key) + "=" + Narrow(pair.value) + ";";
    out += " sig=";
    for (uint8_t byte : record.GetSignature()) out += std::string(1, kHex[byte >> 4]) + kHex[byte & 15];
    out += " signed=" + Shown(std::string(record.GetSignedBytes().begin(), record.GetSignedBytes().end())) + "}";
  }
  return out;
}

struct ReadCase {
  const char* name;
  std::string text;
  const char* expected;  // "ok" or the error, then the records read
};

void PrintTo(const ReadCase& c, std::ostream* out) { *out << c.name; }

const ReadCase kReadCases[] = {
    {"Empty", "", "ok | "},
    {"CommentsAndBlanksOnly", "# a comment\n\n#another\n", "ok | "},
    {"OneRecord", "a=1\nb=two words\nsignature=0aFF\n", "ok | {a=1;b=two words; sig=0aff signed=a=1\\nb=two words\\n}"},
    {"LastLineWithoutEnd", "a=1\nsignature=00", "ok | {a=1; sig=00 signed=a=1\\n}"},
    {"CrLfEndsAreCutFromValuesButSigned", "# c\r\n\r\na=1\r\nsignature=01\r\n", "ok | {a=1; sig=01 signed=a=1\\r\\n}"},
    {"TwoRecordsWithCommentsBetween", "a=1\nsignature=01\n\n# next\nb=2\nsignature=02\n",
     "ok | {a=1; sig=01 signed=a=1\\n}{b=2; sig=02 signed=b=2\\n}"},
    {"ValueKeepsLaterEqualsAndMayBeEmpty", "a=b=c\nempty=\nsignature=00\n",
     "ok | {a=b=c;empty=; sig=00 signed=a=b=c\\nempty=\\n}"},
    {"Utf8Value",
     "name=Gr\xC3\xBC\xC3\x9F"
     "e\nsignature=00\n",
     "ok | {name=Gr\xC3\xBC\xC3\x9F"
     "e; sig=00 signed=name=Gr\xC3\xBC\xC3\x9F"
     "e\\n}"},
    {"NoSignature", "a=1\nb=2\n", "record without a signature at line 2 | "},
    {"SignatureWithoutRecord", "# c\nsignature=00\n", "signature without a record at line 2 | "},
    {"SignatureNotHex", "a=1\nsignature=0g\n", "bad signature at line 2 | "},
    {"SignatureOddLength", "a=1\nsignature=abc\n", "bad signature at line 2 | "},
    {"SignatureEmpty", "a=1\nsignature=\n", "bad signature at line 2 | "},
    {"NulByte", std::string("a=1\nb=x\0y\nsignature=00\n", 23), "NUL byte at line 2 | "},
    {"NulByteInAComment", std::string("#\0\na=1\nsignature=00\n", 20), "NUL byte at line 1 | "},
    {"LineWithoutEquals", "a=1\njunk\nsignature=00\n", "expected key=value at line 2 | "},
    {"EmptyKey", "=v\nsignature=00\n", "expected key=value at line 1 | "},
    {"BlankLineInsideARecord", "a=1\n\nsignature=00\n", "expected key=value at line 2 | "},
    {"InvalidUtf8", "a=\xFF\nsignature=00\n", "invalid UTF-8 at line 1 | "},
    {"FaultKeepsEarlierRecords", "a=1\nsignature=01\nb=2\n",
     "record without a signature at line 3 | {a=1; sig=01 signed=a=1\\n}"},
};

class LcUSessionRecordRead : public ::testing::TestWithParam<ReadCase> {
protected:
  void SetUp() override { LcUString::Initialize(); }
  void TearDown() override { LcUString::Terminate(); }
};

TEST_P(LcUSessionRecordRead, Text) {
  const ReadCase& c = GetParam();
  std::string out;
  {
    LcUSessionRecordList records;
    LcUStringA error;
    bool ok = LcUSessionRecord::Read(c.text.data(), c.text.size(), records, error);
    out =
        (ok ? std::string("ok") : std::string(error.Get() ? error.Get() : "<no error text>")) + " | " + Render(records);
  }
  EXPECT_EQ(out, c.expected);
}

INSTANTIATE_TEST_SUITE_P(Session, LcUSessionRecordRead, ::testing::ValuesIn(kReadCases),
                         [](const ::testing::TestParamInfo<ReadCase>& info) { return info.param.name; });

// What the test verifier was shown, and what it answers.
struct Verdicts {
  bool accept = true;
  int calls = 0;
  std::string signedBytes;
};

bool Verify(void* context, const LcUSessionRecord& record) {
  auto* verdicts = static_cast<Verdicts*>(context);
  ++verdicts->calls;
  verdicts->signedBytes.assign(record.GetSignedBytes().begin(), record.GetSignedBytes().end());
  return verdicts->accept;
}

const char kFullSession[] =
    "# A session of another product\n"
    "session.registry.company=Acme Works\n"
    "session.registry.product=Drafter\n"
    "session.registry.version=7.1\n"
    "session.registry.options=Settings\n"
    "session.registry.inherit_app_name=Drafter 6\n"
    "session.release_name=Drafter Release\n"
    "session.title=Drafter Title\n"
    "session.appdata=Drafter Data\n"
    "session.productline=Drafter Line\n"
    "session.registry.inherit_root_3=Software\\Old\\Three\n"
    "session.registry.inherit_root_7=Software\\Old\\Seven\n"
    "custom.key=abc\n"
    "signature=00ff\n";

// A session started over a test folder, with its log from the start on.
class LcUSessionStart : public TempFolderTest {
protected:
  void SetUp() override {
    TempFolderTest::SetUp();
    LcUSession::SetSessionFolder(folder.Get());
  }
  void TearDown() override {
    if (started) LcUSession::Terminate();
    LcUSessionFileProvider::SetVerifier(nullptr, nullptr);
    TempFolderTest::TearDown();
  }
  void Start() {
    static int marks = 0;
    mark = "=== session start " + std::to_string(++marks) + " ===\n";
    LcUError::LogF("%s", mark.c_str());
    ASSERT_TRUE(LcUSession::Initialize());
    started = true;
  }
  std::string Log() const {
    std::string text = LogText();
    size_t at = text.rfind(mark);
    return at == std::string::npos ? "<mark lost>" : text.substr(at + mark.size());
  }
  void WriteSession(const std::string& text) { ASSERT_TRUE(WriteFile(In(u"session.twlic"), text)); }
  static std::vector<std::string> Locations() {
    std::vector<std::string> out;
    for (int32_t i = 0; i < LcURegistry::GetLocationCount(); ++i)
      out.push_back(Narrow(LcUString(LcURegistry::GetLocation(i))));
    return out;
  }
  // Every field of the info, then the locations, as one text.
  static std::string Identity() {
    const LcUSessionInfo& i = LcUSession::GetInfo();
    std::string out;
    for (const LcUString* field : {&i.company, &i.product, &i.version, &i.options, &i.inheritAppName, &i.releaseName,
                                   &i.title, &i.appData, &i.productLine})
      out += Narrow(*field) + "|";
    out += std::string(i.releaseNameNarrow.Get() ? i.releaseNameNarrow.Get() : "<null>") + " @";
    for (const std::string& location : Locations()) out += " " + location;
    return out;
  }
  static constexpr const char* kDefaults =
      "Hollimar Tarnwicket|Hollimar Tarnwicket|6.0|Options|Tarnwicket 5|Hollimar Tarnwicket|Hollimar Tarnwicket|"
      "Hollimar Tarnwicket|Hollimar Tarnwicket|Hollimar Tarnwicket @ Software\\Hollimar Tarnwicket\\Hollimar "
      "Tarnwicket\\6.0";

  std::string mark;
  bool started = false;
};

TEST_F(LcUSessionStart, NoFileKeepsTheDefaultsAndSaysSo) {
  Start();
  EXPECT_EQ(Narrow(LcUString(LcURegistry::GetRootKey())), "Software\\Hollimar Tarnwicket\\Hollimar Tarnwicket\\6.0");
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(LcUSession::GetValue(u"session.title"), nullptr);
  EXPECT_EQ(Log(), "LcUSession: Can't open session file.\nLcUSession: Failed to load session data.\n");
  EXPECT_EQ(Narrow(LcUString(LcUSession::GetSessionPath())), Narrow(folder));
}

TEST_F(LcUSessionStart, FileRefusedWithoutAVerifier) {
  WriteSession(kFullSession);
  Start();
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(Log(), "LcUSession: Invalid file\n");
  EXPECT_FALSE(LcUSession::HasValue(u"custom.key", u"abc")) << "a refused file's records are dropped";
}

TEST_F(LcUSessionStart, FileRefusedByTheVerifier) {
  Verdicts verdicts;
  verdicts.accept = false;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  WriteSession(kFullSession);
  Start();
  EXPECT_EQ(verdicts.calls, 1);
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(Log(), "LcUSession: Invalid file\n");
}

TEST_F(LcUSessionStart, TrustedFileNamesTheProduct) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  WriteSession(kFullSession);
  Start();
  EXPECT_EQ(Log(), "");
  ASSERT_EQ(verdicts.calls, 1);
  // The signature covers the record's lines, the comment before it not.
  std::string full = kFullSession;
  size_t begin = full.find('\n') + 1, end = full.find("signature=");
  EXPECT_EQ(Shown(verdicts.signedBytes), Shown(full.substr(begin, end - begin)));

  EXPECT_EQ(Identity(),
            "Acme Works|Drafter|7.1|Settings|Drafter 6|Drafter Release|Drafter Title|Drafter Data|Drafter Line|Drafter "
            "Release @ Software\\Acme Works\\Drafter\\7.1 Software\\Old\\Seven Software\\Old\\Three");
  EXPECT_EQ(Narrow(LcUString(LcUSession::GetProductLine())), "Drafter Line");
  EXPECT_EQ(Narrow(LcUString(LcUSession::GetValue(u"custom.key"))), "abc");
  EXPECT_EQ(LcUSession::GetValue(u"custom.missing"), nullptr);
  EXPECT_TRUE(LcUSession::HasValue(u"custom.key", u"abc"));
  EXPECT_FALSE(LcUSession::HasValue(u"custom.key", u"ABC"));
  EXPECT_FALSE(LcUSession::HasValue(u"custom.missing", u""));

  LcUString expected, local, out;
  ASSERT_TRUE(LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_LOCAL_APPDATA, local));
  LcUSysFile::Join3(local.Get(), u"Acme Works", u"Drafter Line", expected);
  EXPECT_TRUE(LcUAppInfo::GetDirectory(0, out));
  EXPECT_EQ(Narrow(out), Narrow(expected));
  EXPECT_FALSE(LcUAppInfo::GetDirectory(1, out));
  EXPECT_TRUE(out.IsEmpty());
}

TEST_F(LcUSessionStart, KeysTheFileLacksKeepTheirDefaults) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  WriteSession("session.registry.version=6.5\nsession.unknown=1\nsignature=00\n");
  Start();
  std::string expected = kDefaults;
  expected.replace(expected.find("|6.0|"), 5, "|6.5|");
  expected.replace(expected.rfind("6.0"), 3, "6.5");
  EXPECT_EQ(Identity(), expected);
}

TEST_F(LcUSessionStart, MoreThanOneRecordIsRefused) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  WriteSession("session.registry.version=7\nsignature=00\nsession.registry.version=8\nsignature=00\n");
  Start();
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(Log(), "LcUSession: Invalid file\n");
}

TEST_F(LcUSessionStart, UnreadableFileFailsToLoad) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  WriteSession("session.registry.version=7\nsignature=zz\n");
  Start();
  EXPECT_EQ(verdicts.calls, 0);
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(Log(), "LcUSession- session file: bad signature at line 2\nLcUSession: Failed to load session data.\n");
}

TEST_F(LcUSessionStart, FileBeyondTheSizeLimitFailsToLoad) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  std::string record = "session.registry.version=7\nsignature=00\n";
  // Comment lines of 64 bytes fill the file to the limit exactly.
  std::string padded = record;
  std::string line = "#" + std::string(62, '-') + "\n";
  while (padded.size() + line.size() <= size_t(LcUSessionFileProvider::eMAX_FILE_BYTES)) padded += line;
  padded += std::string(size_t(LcUSessionFileProvider::eMAX_FILE_BYTES) - padded.size() - 1, '#') + "\n";
  ASSERT_EQ(padded.size(), size_t(LcUSessionFileProvider::eMAX_FILE_BYTES));
  WriteSession(padded);
  Start();
  EXPECT_EQ(Narrow(LcUSession::GetInfo().version), "7") << "a file at the limit is read";
  LcUSession::Terminate();
  started = false;

  LcUSession::SetSessionFolder(folder.Get());
  WriteSession(padded + "\n");
  Start();
  EXPECT_EQ(verdicts.calls, 1);
  EXPECT_EQ(Identity(), kDefaults);
  EXPECT_EQ(Log(), "LcUSession: Failed to load session data.\n");
}

// The roots of earlier versions, highest number first.
struct InheritCase {
  const char* name;
  std::map<int, std::string> roots;
  std::vector<std::string> expected;
};

void PrintTo(const InheritCase& c, std::ostream* out) { *out << c.name; }

const char kRoot[] = "Software\\Hollimar Tarnwicket\\Hollimar Tarnwicket\\6.0";

const InheritCase kInheritCases[] = {
    {"HighestFirst", {{3, "Three"}, {7, "Seven"}}, {kRoot, "Seven", "Three"}},
    {"BothEndsOfTheRange", {{0, "Zero"}, {50, "Fifty"}, {10, "Ten"}}, {kRoot, "Fifty", "Ten", "Zero"}},
    {"BeyondTheRangeIgnored", {{51, "Fifty-one"}, {2, "Two"}}, {kRoot, "Two"}},
    {"EmptyValueAddsNothing", {{4, ""}, {5, "Five"}}, {kRoot, "Five"}},
    {"ValueTakenAsItStands",
     {{1, "Software\\Other Maker\\Product 4.2"}},
     {kRoot, "Software\\Other Maker\\Product 4.2"}},
};

class LcUSessionInherit : public LcUSessionStart, public ::testing::WithParamInterface<InheritCase> {};

TEST_P(LcUSessionInherit, Locations) {
  Verdicts verdicts;
  LcUSessionFileProvider::SetVerifier(Verify, &verdicts);
  std::string text;
  for (const auto& root : GetParam().roots)
    text += "session.registry.inherit_root_" + std::to_string(root.first) + "=" + root.second + "\n";
  WriteSession(text + "signature=00\n");
  Start();
  EXPECT_EQ(Locations(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Session, LcUSessionInherit, ::testing::ValuesIn(kInheritCases),
                         [](const ::testing::TestParamInfo<InheritCase>& info) { return info.param.name; });

TEST_F(LcUSessionStart, TerminateUninstallsWhatItMade) {
  Start();
  LcUString out;
  EXPECT_TRUE(LcUAppInfo::GetDirectory(0, out));
  LcUSession::Terminate();
  started = false;
  EXPECT_EQ(LcURegistry::GetRegistryLocationProvider(), nullptr);
  EXPECT_FALSE(LcUAppInfo::GetDirectory(0, out));
  EXPECT_TRUE(out.IsEmpty());
}

// The providers behind LcUAppInfo, asked directly.
class LcUAppInfoProviders : public TempFolderTest {};

TEST_F(LcUAppInfoProviders, EachAnswersKindZeroOnly) {
  LcUString local, profile, expected, out;
  ASSERT_TRUE(LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_LOCAL_APPDATA, local));
  ASSERT_TRUE(LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_PROFILE, profile));

  LcUSessionAppInfoProvider session(u"Maker", u"Line");
  LcUSysFile::Join3(local.Get(), u"Maker", u"Line", expected);
  EXPECT_TRUE(session.GetDirectory(0, out));
  EXPECT_EQ(Narrow(out), Narrow(expected));
  EXPECT_FALSE(session.GetDirectory(1, out));
  EXPECT_TRUE(out.IsEmpty());

  LcUHomeAppInfoProvider home(u"tool");
  LcUSysFile::Join3(profile.Get(), u".hollimar", u"tool", expected);
  EXPECT_TRUE(home.GetDirectory(0, out));
  EXPECT_EQ(Narrow(out), Narrow(expected));
  EXPECT_FALSE(home.GetDirectory(1, out));
  EXPECT_TRUE(out.IsEmpty());
}

TEST_F(LcUAppInfoProviders, TempProviderKeepsOneFreshName) {
  LcUTempAppInfoProvider first;
  LcUString a, again, temp;
  ASSERT_TRUE(first.GetDirectory(0, a));
  ASSERT_TRUE(first.GetDirectory(0, again));
  EXPECT_EQ(Narrow(a), Narrow(again)) << "the name is made once";
  EXPECT_FALSE(LcUSysFile::Exists(a.Get())) << "a name, not a folder";
  ASSERT_TRUE(LcUSysFile::GetTempFolder(temp));
  EXPECT_EQ(Narrow(a).rfind(Narrow(temp), 0), 0u) << Narrow(a);
  EXPECT_FALSE(first.GetDirectory(1, a));
  EXPECT_TRUE(a.IsEmpty());
}

}  // namespace
