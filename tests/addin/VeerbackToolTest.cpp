// The veerback program as users run it: what it prints where, its exit codes,
// and what it refuses before anything is written.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "TestProcess.h"
#include "addin/LcOmTrackBackRecord.h"
#include "addin/LcOmTrackBackSender.h"
#include "environment/LcUSysFile.h"

namespace {
// Lines end in "\n" here, whatever the platform's text files end them with.
std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  std::string lines = text.str();
  lines.erase(std::remove(lines.begin(), lines.end(), '\r'), lines.end());
  return lines;
}

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

// The current folder, for as long as it lives; the programs run inherit it.
class InFolder {
public:
  explicit InFolder(const std::string& folder) : saved(std::filesystem::current_path()) {
    std::filesystem::current_path(std::filesystem::u8path(folder));
  }
  ~InFolder() { std::filesystem::current_path(saved); }

private:
  std::filesystem::path saved;
};

class VeerbackTool : public ::testing::Test {
protected:
  void SetUp() override {
    folder = TestProcess::MakeTempFolder("tool");
    TestProcess::SetEnvironment("XDG_CONFIG_HOME", folder);
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", folder);
    TestProcess::SetEnvironment("TW_REGISTRY_DIR", folder);
  }

  // Runs veerback; its standard output and error land in out and err.
  int Run(const std::vector<std::string>& arguments, void (*pump)() = nullptr) {
    std::string output = folder + "/run";
    int code = TestProcess::Run(TestProcess::NativePath(TW_VEERBACK), arguments, pump, output);
    out = Read(output + ".out");
    err = Read(output + ".err");
    return code;
  }

  void Write(const std::string& path, const void* data, size_t size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_NE(nullptr, file);
    std::fwrite(data, 1, size, file);
    std::fclose(file);
  }

  std::string folder, out, err;
};
}  // namespace

TEST_F(VeerbackTool, HelpAndVersionGoToStandardOutput) {
  const struct {
    std::vector<std::string> arguments;
    const char* shows;
  } cases[] = {
      {{"--help"}, "usage: veerback COMMAND"},
      {{"-h"}, "usage: veerback COMMAND"},
      {{"help"}, "usage: veerback COMMAND"},
      {{"help", "send"}, "--timeout SECONDS"},
      {{"send", "--help"}, "travel in the record unused"},
      {{"help", "inspect"}, "--json"},
      {{"doctor", "-h"}, "usage: veerback doctor"},
      {{"register", "--help"}, "usage: veerback register MODULE"},
      {{"help", "unregister"}, "DllUnregisterServer"},
      {{"--version"}, "veerback 0."},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(0, Run(c.arguments)) << c.arguments[0];
    EXPECT_NE(std::string::npos, out.find(c.shows)) << c.arguments[0] << ": " << out;
    EXPECT_EQ("", err) << c.arguments[0];
    EXPECT_EQ(c.arguments[0] != "--version", out.find("exit codes:") != std::string::npos) << c.arguments[0];
  }
}

TEST_F(VeerbackTool, ABadCommandLineNamesWhatIsWrong) {
  const struct {
    std::vector<std::string> arguments;
    const char* says;
  } cases[] = {
      {{}, "usage: veerback COMMAND"},
      {{"bogus"}, "unknown command \"bogus\""},
      {{"--bogus"}, "unknown option --bogus"},
      {{"help", "bogus"}, "no command \"bogus\""},
      {{"doctor", "extra"}, "stray argument \"extra\""},
      {{"register"}, "needs a MODULE"},
      {{"register", "a.so", "b.so"}, "stray argument \"b.so\""},
      {{"unregister", "--force"}, "unknown option --force"},
      {{"inspect"}, "needs a FILE"},
      {{"inspect", "--yaml", "x"}, "unknown option \"--yaml\""},
      {{"inspect", "a", "b"}, "stray argument \"b\""},
      {{"send", "--document", "C:\\a.gpt", "extra"}, "stray argument \"extra\""},
      {{"send", "--document", "C:\\a.gpt", "--zoom", "2"}, "unknown option --zoom"},
      {{"send", "--document"}, "--document needs a value"},
      {{"send"}, "--document PATH is required"},
      {{"send", "--document", ""}, "--document PATH is required"},
      {{"send", "--document", std::string(261, 'p')}, "--document is longer than 260"},
      {{"send", "--document", "a", "--item", "x", "--item-file", "y"}, "not both"},
  };
  for (const auto& c : cases) {
    std::string name = c.arguments.empty() ? "(none)" : c.arguments.back();
    EXPECT_EQ(1, Run(c.arguments)) << name;
    EXPECT_NE(std::string::npos, err.find(c.says)) << name << ": " << err;
    EXPECT_EQ("", out) << name;
  }
}

TEST_F(VeerbackTool, SendRefusesValuesThatMakeNoCameraBeforeWritingAnything) {
  const struct {
    std::vector<std::string> options;
    const char* names;
  } cases[] = {
      {{"--position", "1,nan,2"}, "--position"},
      {{"--position", "1,2"}, "--position"},
      {{"--position", "1,2,3,4"}, "--position"},
      {{"--near", "inf"}, "--near"},
      {{"--height", "1x"}, "--height"},
      {{"--rotation", "0,0,0,0"}, "--rotation"},
      {{"--aspect", "0"}, "--aspect"},
      {{"--aspect", "-2"}, "--aspect"},
      {{"--height", "0"}, "--height"},
      {{"--near", "5", "--far", "5"}, "--near"},
      {{"--near", "6", "--far", "5"}, "--near"},
      {{"--ortho"}, "--ortho needs --height"},
      {{"--timeout", "0"}, "--timeout"},
      {{"--timeout", "-1"}, "--timeout"},
  };
  // On Windows the record folder is the prefix's and outlives the test.
  LcUString record;
  ASSERT_TRUE(LcOmTrackBackSender::GetRecordPath(record));
  LcUSysFile::Delete(record.Get(), true);
  for (const auto& c : cases) {
    std::vector<std::string> arguments = {"send", "--document", "C:\\a.gpt"};
    arguments.insert(arguments.end(), c.options.begin(), c.options.end());
    EXPECT_EQ(1, Run(arguments)) << c.options[0];
    EXPECT_NE(std::string::npos, err.find(c.names)) << c.options[0] << ": " << err;
  }
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(record.Get(), narrow, true);
  EXPECT_FALSE(std::ifstream(narrow.Get()).good());
  // A good camera with nobody listening: exit 2, not bad input.
  EXPECT_EQ(2, Run({"send", "--document", "C:\\a.gpt", "--ortho", "--height", "10"}));
}

TEST_F(VeerbackTool, InspectDecodesOnlyAWholeRecord) {
  LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();
  record.setDocumentPath(u"C:\\a \"b\".gam");
  std::string good = folder + "/good", shorter = folder + "/short", longer = folder + "/long",
              open = folder + "/open";
  Write(good, &record, sizeof(record));
  Write(shorter, &record, sizeof(record) - 1);
  std::vector<char> more(sizeof(record) + 1, 0);
  Write(longer, more.data(), more.size());
  // No terminator in its 261 units, and the next field's text right behind them.
  for (char16_t& unit : record.documentPath) unit = u'x';
  record.setItemFilePath(u"C:\\item.txt");
  Write(open, &record, sizeof(record));

  const struct {
    std::string path;
    const char* says;
  } refused[] = {
      {shorter, "1727 bytes, not the 1728"},
      {longer, "1729 bytes, not the 1728"},
      {folder, "is a folder"},
      {folder + "/none", "no such file"},
  };
  for (const auto& c : refused) {
    EXPECT_EQ(1, Run({"inspect", c.path})) << c.path;
    EXPECT_NE(std::string::npos, err.find(c.says)) << c.path << ": " << err;
  }
  EXPECT_EQ(1, Run({"inspect", open}));
  EXPECT_NE(std::string::npos, out.find("\"" + std::string(261, 'x') + "\"  (no terminator)")) << out;
  EXPECT_EQ(1, Run({"inspect", "--json", open}));
  EXPECT_NE(std::string::npos, out.find("\"documentPathTerminated\": false,")) << out;
  EXPECT_NE(std::string::npos, out.find("\"itemFilePathTerminated\": true,")) << out;

  EXPECT_EQ(0, Run({"inspect", good}));
  EXPECT_NE(std::string::npos, out.find("farDistance        10\n")) << out;
  EXPECT_EQ(0, Run({"inspect", "--json", good}));
  EXPECT_EQ('{', out[0]);
  for (const char* field : {"\"documentPath\": \"C:\\\\a \\\"b\\\".gam\",", "\"documentPathTerminated\": true,", "\"hasItem\": 0,",
                            "\"rotation\": [0, 0, 0, 1],", "\"farDistance\": 10,", "\"offset\": [0, 0, 0],"})
    EXPECT_NE(std::string::npos, out.find(field)) << field << " in " << out;
}

TEST_F(VeerbackTool, RegisterTakesAPathAsTypedAndSaysWhyItFails) {
  std::string text = folder + "/notes.txt";
  Write(text, "not a module", 12);
  const struct {
    std::string module;
    const char* says;
  } cases[] = {
      {folder + "/missing.so", "no such file"},
      {folder, "a folder, not a module"},
      {text, "not a module that can be loaded here: "},
      {TestProcess::NativePath(TW_PLAIN_MODULE), "without the server functions"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(1, Run({"register", c.module})) << c.module;
    EXPECT_NE(std::string::npos, err.find(c.says)) << c.module << ": " << err;
  }
  // A bare name is a file in the current folder, not one on the library path.
  InFolder here(folder);
  EXPECT_EQ(1, Run({"register", "notes.txt"}));
  EXPECT_NE(std::string::npos, err.find(folder)) << err;
  EXPECT_NE(std::string::npos, err.find("notes.txt: not a module")) << err;
}

TEST_F(VeerbackTool, DoctorPassesOnAFreshInstallAndSaysWhatToDo) {
  std::filesystem::path module = std::filesystem::u8path(TestProcess::NativePath(TW_ADDIN_MODULE));
  {
    InFolder modules(module.parent_path().u8string());
    ASSERT_EQ(0, Run({"register", module.filename().u8string()})) << err;
  }
  // Registered, nobody listening, no record folder yet: only the listener is missing.
  EXPECT_EQ(2, Run({"doctor"}));
  EXPECT_NE(std::string::npos, out.find("ok    the add-in is registered")) << out;
  EXPECT_NE(std::string::npos, out.find(module.u8string())) << out;
  EXPECT_EQ(1u, Count(out, "FAIL")) << out;
  EXPECT_EQ(1u, Count(out, "to do: ")) << out;
  EXPECT_NE(std::string::npos, out.find("FAIL  a Gearloft with the Veerback add-in is listening\n        to do: "));

  ASSERT_EQ(0, Run({"unregister", module.u8string()})) << err;
  EXPECT_EQ(6, Run({"doctor"}));
  // One finding for the registration, with what to do.
  EXPECT_NE(std::string::npos, out.find("FAIL  the add-in is registered\n        to do: register the add-in"));
  EXPECT_EQ(2u, Count(out, "FAIL")) << out;
  EXPECT_EQ(2u, Count(out, "to do: ")) << out;
}
