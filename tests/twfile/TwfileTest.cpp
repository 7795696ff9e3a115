#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "http/HttpTestProcess.h"
#include "http/TestHttpServer.h"

// The real tool against nginx on loopback, each test with a cache folder
// of its own.
class Twfile : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_EQ("", server.Failure());
    static std::atomic<int> serial{0};
    folder = "/tmp/twfile-" + std::to_string(HttpTestProcess::ProcessId()) + "-" + std::to_string(serial++);
    std::filesystem::create_directories(Local(folder + "/cache"));
  }
  void TearDown() override {
    std::error_code ignored;
    std::filesystem::remove_all(Local(folder), ignored);
  }

  static std::string Local(const std::string& linuxPath) { return HttpTestProcess::LocalPath(linuxPath); }

  // Runs twfile with the test's cache; its exit code, output and errors.
  int Run(std::vector<std::string> arguments, bool withCache = true) {
    arguments.insert(arguments.begin(), HttpTestProcess::LocalPath(TW_TWFILE));
    if (withCache) {
      arguments.push_back("--cache-dir");
      arguments.push_back(Local(folder + "/cache"));
    }
    int code = HttpTestProcess::Run(arguments, Local(folder + "/out"), Local(folder + "/err"));
    output = Read(folder + "/out");
    errors = Read(folder + "/err");
    return code;
  }

  std::string Read(const std::string& linuxPath) const {
    std::ifstream file(Local(linuxPath), std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
  }

  std::string Url(const std::string& name) const {
    std::u16string url = server.Url(name);
    return std::string(url.begin(), url.end());
  }

  size_t Gets() const {
    size_t count = 0;
    for (const auto& entry : server.AccessLog())
      if (entry.method == "GET") ++count;
    return count;
  }

  TestHttpServer server;
  std::string folder, output, errors;
};

TEST_F(Twfile, GetThenCatGiveTheFilesBytesAndTheSecondGetAsksNoBlock) {
  std::vector<uint8_t> data = TestHttpServer::Pattern(3 * 65536 + 1234, 5);
  server.Serve("model.bin", data);
  ASSERT_EQ(0, Run({"get", Url("model.bin"), Local(folder + "/copy.bin")})) << errors;
  EXPECT_EQ(std::string(data.begin(), data.end()), Read(folder + "/copy.bin"));
  EXPECT_EQ(0u, output.find("sha256 ")) << output;
  EXPECT_NE(std::string::npos, errors.find("blocks: 0 from cache, 4 downloaded")) << errors;
  size_t gets = Gets();
  EXPECT_GE(gets, 1u);
  ASSERT_EQ(0, Run({"get", Url("model.bin"), Local(folder + "/again.bin")})) << errors;
  EXPECT_EQ(gets, Gets()) << "every block from the cache";
  EXPECT_NE(std::string::npos, errors.find("blocks: 4 from cache, 0 downloaded")) << errors;
  ASSERT_EQ(0, Run({"cat", Url("model.bin")})) << errors;
  EXPECT_EQ(std::string(data.begin(), data.end()), output);
  ASSERT_EQ(0, Run({"cat", Url("model.bin"), "--offset", "65530", "--length", "20"})) << errors;
  EXPECT_EQ(std::string(data.begin() + 65530, data.begin() + 65550), output);
  ASSERT_EQ(0, Run({"info", Url("model.bin")})) << errors;
  EXPECT_NE(std::string::npos, output.find("size       197842")) << output;
}

TEST_F(Twfile, WithTheServerStoppedACompleteCopyStillServesAndAnUncachedFileIsUnavailable) {
  std::vector<uint8_t> data = TestHttpServer::Pattern(100000, 6);
  server.Serve("kept.bin", data);
  server.Serve("never.bin", data);
  ASSERT_EQ(0, Run({"get", Url("kept.bin"), Local(folder + "/copy.bin")})) << errors;
  ASSERT_TRUE(server.StopNginx());
  ASSERT_EQ(0, Run({"cat", Url("kept.bin")})) << errors;
  EXPECT_EQ(std::string(data.begin(), data.end()), output);
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(3, Run({"cat", Url("never.bin")}));
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 60.0);
  EXPECT_NE(std::string::npos, errors.find("twfile: cannot open")) << errors;
  EXPECT_EQ(3, Run({"info", Url("never.bin")}));
}

TEST_F(Twfile, ACacheIsListedAndEmptied) {
  server.Serve("a.bin", TestHttpServer::Pattern(70000, 1));
  ASSERT_EQ(0, Run({"get", Url("a.bin"), Local(folder + "/a.bin")})) << errors;
  ASSERT_EQ(0, Run({"cache", "list"})) << errors;
  EXPECT_NE(std::string::npos, output.find("a.bin")) << output;
  EXPECT_NE(std::string::npos, output.find("complete")) << output;
  ASSERT_EQ(0, Run({"cache", "clear"})) << errors;
  ASSERT_EQ(0, Run({"cache", "list"})) << errors;
  EXPECT_EQ(std::string::npos, output.find("a.bin")) << output;
}

TEST_F(Twfile, BadArgumentsExitOneWithAUsageLine) {
  struct Case {
    std::vector<std::string> arguments;
    const char* named;
  };
  for (const Case& c : {Case{{}, "no command"},
                        Case{{"fetch", "x"}, "unknown command fetch"},
                        Case{{"get", "http://127.0.0.1:1/x"}, "get takes 2 operands"},
                        Case{{"cat", "x", "--offset"}, "--offset takes a whole number"},
                        Case{{"cat", "x", "--length", "-3"}, "--length takes a whole number"},
                        Case{{"cat", "x", "--colour"}, "unknown option --colour"},
                        Case{{"cache", "shrink"}, "cache takes list, evict or clear"}}) {
    EXPECT_EQ(1, Run(c.arguments, false)) << c.named;
    EXPECT_NE(std::string::npos, errors.find(c.named)) << errors;
    EXPECT_NE(std::string::npos, errors.find("usage: twfile")) << errors;
  }
  EXPECT_EQ(0, Run({"help"}, false));
  EXPECT_EQ(0u, output.find("usage: twfile")) << output;
}
