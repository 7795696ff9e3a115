#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "HostSimAddInSetup.h"
#include "TestProcess.h"
#include "addin/LcOmTrackBackSender.h"

namespace {
std::string HostSim() {
  return TestProcess::NativePath(TW_HOSTSIM);
}

bool WaitForListener() {
  for (int i = 0; i < 600 && !LcOmTrackBackSender::IsListenerRunning(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return LcOmTrackBackSender::IsListenerRunning();
}

// Lines end in "\n" here, whatever the platform's text files end them with.
std::string Read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(file), (std::istreambuf_iterator<char>()));
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

std::vector<std::string> Lines(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

class HostSimProcess : public ::testing::Test {
protected:
  void SetUp() override {
    folder = TestProcess::MakeTempFolder("hostsim");
    // The listener and the record live in the test's own folders.
    TestProcess::SetEnvironment("XDG_CONFIG_HOME", folder);
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", folder);
  }
  std::string folder;
};
}  // namespace

TEST_F(HostSimProcess, HostsTheAddInAndJournalsEverySend) {
  HostSimAddInSetup addin;
  ASSERT_TRUE(addin.IsReady());
  std::string journal = folder + "/journal.txt";
  std::string state = folder + "/state.txt";
  std::vector<std::string> arguments = addin.Arguments();
  for (const char* a : {"--journal", journal.c_str(), "--state-file", state.c_str(), "--quit-after", "2",
                        "--timeout", "60"})
    arguments.push_back(a);
  int code = -1;
  std::thread host([&] { code = TestProcess::Run(HostSim(), arguments, nullptr); });
  bool listening = WaitForListener();
  for (const char* document : {"C:\\Models\\Bracket.gpt", "C:\\Models\\Gearbox.gam"})
    EXPECT_TRUE(!listening || TestProcess::Run(TestProcess::NativePath(TW_VEERBACK),
                                               {"send", "--document", document}, nullptr) == 0);
  host.join();
  ASSERT_TRUE(listening);
  EXPECT_EQ(0, code);

  std::vector<std::string> lines = Lines(journal);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ("QueryInterface(AddInSite) -> 0x00000000 AddInSite#1", lines[0]);
  int windowReads = 0;
  for (const std::string& line : lines) windowReads += line.rfind("ApplicationMainWindow() -> 0x00000000 ", 0) == 0;
  EXPECT_EQ(2, windowReads);
  // The final state comes after Deactivate: everything given out is back.
  std::vector<std::string> last = Lines(state);
  ASSERT_FALSE(last.empty());
  EXPECT_EQ("messages: 2", last[0]);
  EXPECT_EQ("references held: none", last[last.size() - 2]);
  EXPECT_EQ("released too often: none", last.back());
}

TEST_F(HostSimProcess, RefusesBadInputWithItsExitCode) {
  std::string model = folder + "/model.txt";
  std::ofstream(model) << "document C:\\a.gpt part open\nview\neye 1 2\n";
  const struct {
    std::vector<std::string> arguments;
    int code;
  } cases[] = {
      {{"--quit-after", "0"}, 1},
      {{"--timeout"}, 1},
      {{"--clsid", "4285DA55"}, 1},
      {{"--model", model}, 1},
      {{"--model", folder + "/missing.txt"}, 1},
      {{"--model", folder}, 1},
      {{"--fail", "CameraApply@x=0x80004005"}, 1},
      {HostSimAddInSetup::MissingAddIn(), 2},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.arguments;
    arguments.push_back("--timeout");
    arguments.push_back("30");
    EXPECT_EQ(c.code, TestProcess::Run(HostSim(), arguments, nullptr, folder + "/run")) << arguments[0];
    EXPECT_EQ(0u, Read(folder + "/run.err").find("hostsim: ")) << arguments[0];
  }
}

TEST_F(HostSimProcess, ASecondHostLeavesTheChannelToTheFirstAndVerboseTellsWhatEachMessageDid) {
  HostSimAddInSetup addin;
  ASSERT_TRUE(addin.IsReady());
  std::vector<std::string> arguments = addin.Arguments();
  for (const char* a : {"--verbose", "--fail", "CameraApply@2=0x80004005", "--quit-after", "2", "--timeout", "60"})
    arguments.push_back(a);
  int code = -1;
  std::thread host([&] { code = TestProcess::Run(HostSim(), arguments, nullptr, folder + "/first"); });
  bool listening = WaitForListener();
  if (listening) {
    EXPECT_EQ(4, TestProcess::Run(HostSim(), arguments, nullptr, folder + "/second"));
    EXPECT_NE(std::string::npos, Read(folder + "/second.err").find("another host is listening"));
  }
  for (const char* document : {"C:\\Models\\Bracket.gpt", "C:\\Models\\Gearbox.gam"})
    EXPECT_TRUE(!listening || TestProcess::Run(TestProcess::NativePath(TW_VEERBACK),
                                               {"send", "--document", document}, nullptr) == 0);
  host.join();
  ASSERT_TRUE(listening);
  EXPECT_EQ(0, code) << Read(folder + "/first.err");
  std::string out = Read(folder + "/first.out");
  for (const char* line : {"hostsim: message 1: active document C:\\Models\\Bracket.gpt, camera applied, selected "
                           "the whole document, no call failed\n",
                           "hostsim: message 2: active document C:\\Models\\Gearbox.gam, camera not applied, "
                           "selected nothing, first failed call CameraApply -> 0x80004005\n"})
    EXPECT_NE(std::string::npos, out.find(line)) << line << "in\n" << out;
}
