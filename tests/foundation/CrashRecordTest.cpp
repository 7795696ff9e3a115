#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "ErrorTesting.h"
#include "foundation/LcUSysError.h"

using ErrorTesting::ChildChecks;
using ErrorTesting::EndsWith;

// A crash record is a minidump on Windows and the crash file on Linux; both
// carry the log in up to three parts and read back the same way. The
// crashing runs are real, in a child process.

namespace {
// In the build tree, so that builds running side by side don't meet.
std::filesystem::path RecordPath(const char* name) {
  return std::filesystem::current_path() / (std::string("crash-") + name + ".rec");
}

bool ReadBack(const std::filesystem::path& path, std::string* text) {
  return LcUSysError::ReadDumpLog(path.u16string().c_str(), ErrorTesting::AppendTo, text);
}

// What follows the system information.
std::string LogParts(const std::string& text) {
  size_t start = text.find("\n\nLog Part 1\n");
  return start == std::string::npos || start == 0 ? "<no system information or no part 1>" : text.substr(start);
}

int AnnounceRecord(const char16_t*) {
  // The process ends without the C library's flush.
  std::fputs("post callback ran\n", stderr);
  std::fflush(stderr);
  return 1;
}

int Cancel(const char16_t*) {
  return 0;
}
}  // namespace

TEST(CrashRecord, ReadingAnythingButARecordFails) {
  std::filesystem::path path = RecordPath("other");
  std::ofstream(path) << "not a crash record, only some text that is long enough to look like a header";
  std::string text;
  EXPECT_FALSE(ReadBack(path, &text));
  std::filesystem::remove(path);
  EXPECT_FALSE(ReadBack(path, &text));
  EXPECT_EQ("", text);
}

TEST(CrashRecordDeathTest, AnEmptyLogIsWrittenAsAPlaceholder) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        std::filesystem::path path = RecordPath("empty");
        checks.Expect(LcUSysError::WriteDump(path.u16string().c_str(), true, 0), "written");
        std::string text;
        checks.Expect(ReadBack(path, &text), "read back");
        checks.Expect(LogParts(text) == "\n\nLog Part 1\nEmpty Log\n", "placeholder part: " + LogParts(text));
        std::filesystem::remove(path);
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(CrashRecordDeathTest, FatalStopLeavesARecordWithTheThreeLogParts) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::filesystem::path path = RecordPath("fatal");
  const std::string big(LcUSysError::eLOG_BUFFER_SIZE - 1, 'b');
  std::filesystem::remove(path);
  EXPECT_EXIT(
      {
        LcUSysError::Log("crash first\n");
        LcUSysError::Log(big.c_str());
        LcUSysError::Log("crash last\n");
        LcUSysError::SetCrashOptions(path.u16string().c_str(), true, 0, nullptr, AnnounceRecord, nullptr);
        LcUSysError::Fatal();
      },
      testing::ExitedWithCode(4), "post callback ran");
  std::string text;
  ASSERT_TRUE(ReadBack(path, &text));
  // The ring's older part starts past the newest text and its terminator.
  EXPECT_TRUE(LogParts(text) == "\n\nLog Part 1\ncrash first\n\n\nLog Part 2\n" + big.substr(12) +
                                    "\n\nLog Part 3\ncrash last\n")
      << text.substr(0, 200);
  std::filesystem::remove(path);
}

TEST(CrashRecordDeathTest, AbortReachesTheCrashPath) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::filesystem::path path = RecordPath("abort");
  std::filesystem::remove(path);
  EXPECT_EXIT(
      {
        LcUSysError::SetCrashOptions(path.u16string().c_str(), true, 0, nullptr, nullptr, nullptr);
        LcUSysError::Log("abort marker\n");
        std::abort();
      },
      testing::ExitedWithCode(4), "");
  std::string text;
  ASSERT_TRUE(ReadBack(path, &text));
  EXPECT_EQ("\n\nLog Part 1\nabort marker\n", LogParts(text));
  std::filesystem::remove(path);
}

TEST(CrashRecordDeathTest, PreCallbackCancelsTheRecord) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::filesystem::path path = RecordPath("cancelled");
  std::filesystem::remove(path);
  EXPECT_DEATH(
      {
        LcUSysError::SetCrashOptions(path.u16string().c_str(), true, 0, Cancel, nullptr, nullptr);
        LcUSysError::Fatal();
      },
      "");
  EXPECT_FALSE(std::filesystem::exists(path));
}
