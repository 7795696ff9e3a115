#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUSysError.h"

using ErrorTesting::ChildChecks;
using ErrorTesting::EndsWith;
using ErrorTesting::LogText;

namespace {
constexpr size_t eSIZE = LcUSysError::eLOG_BUFFER_SIZE;
const std::string eSEPARATOR = ".\n.\n.\n.\n.\n";

size_t Count(const std::string& text, const std::string& part) {
  size_t n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class LogFileTest : public testing::Test {
protected:
  void SetUp() override {
    // In the build tree, so that builds running side by side don't meet.
    folder = std::filesystem::current_path() /
             ("log-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
  }

  void TearDown() override {
    LcUSysError::SetLogFile(false);
    LcUSysError::SetLogPath(u"");
    LcUSysError::SetLogFolder(u"");
    std::filesystem::remove_all(folder);
  }

  std::filesystem::path folder;
};
}  // namespace

// Runs in a fresh process, so the first buffer starts empty.
TEST(LcUSysErrorLogDeathTest, FirstBufferIsKeptAndTheSecondRings) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        const std::string big(eSIZE - 1, 'b');
        LcUSysError::Log("start\n");
        LcUSysError::Log(big.c_str());
        checks.Expect(LogText() == "start\n" + big, "a text of 524287 bytes moves whole to the second buffer");

        LcUSysError::Log("tail\n");
        std::string expected = "start\n" + eSEPARATOR + big.substr(6) + "tail\n";
        checks.Expect(LogText() == expected, "the wrap shows the separator, then the older part, then the newer");

        // No handler is set: the refusal is survived, not fatal.
        const std::string tooLong(eSIZE, 't');
        LcUSysError::Log(tooLong.c_str());
        checks.Expect(EndsWith(LogText(), "tail\nLcUSysError::PostFixed: LcUSysError: \"Too long to log\"\n"),
                      "524288 bytes are refused with a report");

        std::string line(999, 'l');
        line += '\n';
        for (int i = 0; i < 3000; ++i) LcUSysError::Log(line.c_str());
        LcUSysError::Log("last\n");
        std::string text = LogText();
        checks.Expect(text.compare(0, 6, "start\n") == 0, "the first text survives");
        checks.Expect(Count(text, eSEPARATOR) == 1, "one separator");
        checks.Expect(EndsWith(text, line + "last\n"), "the newest text ends the replay");
        checks.Expect(text.size() < 2 * eSIZE, "no more than the two buffers");
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUSysErrorLog, NullTextLogsAPlaceholder) {
  LcUSysError::Log(nullptr);
  EXPECT_TRUE(EndsWith(LogText(), "(null)"));
}

// The console replays the log only the first time it opens in a process.
TEST(LcUSysErrorLogDeathTest, ConsoleEchoesTheLogAndTheChain) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        LcUSysError::Log("before the console\n");
        testing::internal::CaptureStdout();
        LcUSysError::SetConsole(true);
        LcUSysError::Log("console marker\n");
        LcUComponent record{};
        LcUSysError::RegisterComponent(&record, "Echoed");
        LcUSysError::UnregisterComponent(&record);
        LcUSysError::SetConsole(false);
        LcUSysError::Log("after the console\n");
        std::string shown = testing::internal::GetCapturedStdout();
        checks.Expect(shown.find("before the console\n") != std::string::npos, "opening replays the log");
        checks.Expect(shown.find("console marker\nInit: EchoedTerm: Echoed") != std::string::npos,
                      "the chain is echoed while the console is on");
        checks.Expect(shown.find("after the console") == std::string::npos, "nothing after it is closed");

        // Opened again: no second replay.
        testing::internal::CaptureStdout();
        LcUSysError::SetConsole(true);
        LcUSysError::SetConsole(false);
        checks.Expect(testing::internal::GetCapturedStdout().empty(), "the replay happens once");

        LcUSysError::RegisterComponent(&record, "Quiet");
        LcUSysError::UnregisterComponent(&record);
        checks.Expect(LogText().find("Init: Quiet") == std::string::npos, "chain lines only with the console on");
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(LogFileTest, FolderGivesAFileNamedAfterTheRun) {
  EXPECT_FALSE(LcUSysError::SetLogFile(true)) << "no folder and no path: no file";
  LcUSysError::Log("logged before the file\n");
  ASSERT_TRUE(LcUSysError::SetLogFolder(folder.u16string().c_str()));
  ASSERT_TRUE(LcUSysError::SetLogFile(true));
  LcUSysError::Log("file marker\n");
  LcUSysError::SetLogFile(false);
  LcUSysError::Log("after the file\n");

  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  ASSERT_EQ(1u, files.size());
  EXPECT_TRUE(std::regex_match(files[0].filename().string(), std::regex("foundation_tests[0-9]+_[0-9]+\\.txt")))
      << files[0];
  std::string text = ReadFile(files[0]);
  EXPECT_NE(std::string::npos, text.find("logged before the file\n")) << "opening replays the log";
  EXPECT_TRUE(EndsWith(text, "file marker\n"));
}

TEST_F(LogFileTest, ChangingThePathReopensWithTheWholeLog) {
  std::filesystem::path one = folder / "one.txt";
  std::filesystem::path two = folder / "two.txt";
  ASSERT_TRUE(LcUSysError::SetLogPath(one.u16string().c_str()));
  ASSERT_TRUE(LcUSysError::SetLogFile(true));
  LcUSysError::Log("into one\n");
  ASSERT_TRUE(LcUSysError::SetLogPath(two.u16string().c_str()));
  LcUSysError::Log("into two\n");
  LcUSysError::SetLogFile(false);

  EXPECT_TRUE(EndsWith(ReadFile(one), "into one\n"));
  EXPECT_TRUE(EndsWith(ReadFile(two), "into one\ninto two\n"));
  std::u16string tooLong(1024, u'p');
  EXPECT_FALSE(LcUSysError::SetLogPath(tooLong.c_str()));
}
