#pragma once
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "RemoteTestProtocol.h"
#include "environment/LcUAppInfo.h"
#include "environment/LcUAppInfoProvider.h"
#include "environment/LcUSysFile.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcUFileURL.h"
#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"
#include "filestream/LcUNetworkConnection.h"
#include "foundation/LcUSysError.h"

// The application's data folder, inside a test's folder.
class TestAppInfo : public LcUFixedAppInfoProvider {
public:
  explicit TestAppInfo(const char16_t* where) { folder = where; }
};

// The engine started over a temporary folder, the application's data in
// "appdata" there, with the remote test
// protocol under "rtest" and a clock that moves only when told.
class FileURLTest : public ::testing::Test {
protected:
  static constexpr uint32_t B = 65536;

  void SetUp() override {
    ASSERT_TRUE(LcUSysFile::MakeTempFolder(folder));
    LcUSysFile::SetTempFolderOverride(folder.Get());
    ASSERT_TRUE(LcUFileURL::Initialize());
    appInfo = new TestAppInfo(PathOf(u"appdata").c_str());
    InstallAppInfo();
    engine = LcUFileURL::GetInstance();
    ASSERT_NE(nullptr, engine);
    protocol = new RemoteTestProtocol(std::u16string(folder.Get()));
    ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
    now = 1000000;
    engine->SetClock([] { return now.load(); });
    SetNetwork(true);
  }

  void TearDown() override {
    LcUSysError::SetTraceLevel(0);
    LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
    LcUAppInfo::SetProvider(previousAppInfo);
    LcUFileURL::Terminate();
    delete protocol;
    delete appInfo;
    LcUSysFile::SetTempFolderOverride(nullptr);
    LcUSysFile::Remove(folder.Get(), true, true);
  }

  // After each start, which installs the session's.
  void InstallAppInfo() { previousAppInfo = LcUAppInfo::SetProvider(appInfo); }

  static void SetNetwork(bool up) {
    LcUNetworkConnection::GetInstance()->SetTestFunction(up ? +[] { return true; } : +[] { return false; });
  }

  static std::vector<uint8_t> Pattern(size_t size, uint32_t seed = 7) {
    std::vector<uint8_t> data(size);
    for (size_t i = 0; i < size; ++i) data[i] = uint8_t((i * seed + i / 251) & 0xFF);
    return data;
  }

  std::u16string PathOf(const char16_t* name) const { return std::u16string(folder.Get()) + u"/" + name; }

  // For the C library: test paths are ASCII, and "/" serves both platforms.
  static std::string Narrow(const std::u16string& path) {
    std::string narrow;
    for (char16_t c : path) narrow += c == u'\\' ? '/' : char(c);
    return narrow;
  }

  std::u16string MakeFile(const char16_t* name, const std::vector<uint8_t>& data) const {
    std::u16string path = PathOf(name);
    FILE* file = std::fopen(Narrow(path).c_str(), "wb");
    if (file) {
      if (!data.empty()) std::fwrite(data.data(), 1, data.size(), file);
      std::fclose(file);
    }
    return path;
  }

  std::vector<uint8_t> ReadDisk(const std::u16string& path) const {
    std::vector<uint8_t> data;
    if (FILE* file = std::fopen(Narrow(path).c_str(), "rb")) {
      int c;
      while ((c = std::fgetc(file)) != EOF) data.push_back(uint8_t(c));
      std::fclose(file);
    }
    return data;
  }

  // A remote file of `size` pattern bytes and its URL.
  std::u16string Remote(const char16_t* name, size_t size) {
    remoteData = Pattern(size);
    MakeFile(name, remoteData);
    return std::u16string(u"rtest://host/") + name;
  }

  LcUFileURLFile* OpenRead(const std::u16string& url) {
    return engine->Open(url.c_str(), nullptr, LcUFileURLFile::eOPEN_READ, LcUSysFileHandle::eDENY_NONE);
  }

  // Polls until done() holds; false if it never does within the bound.
  template <typename Done>
  bool PollUntil(Done done) {
    auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
      if (std::chrono::steady_clock::now() > limit) return false;
      engine->Poll();
      std::this_thread::yield();
    }
    return true;
  }

  std::string LogText() const {
    std::string text;
    LcUSysError::ReplayLog([](const char* piece, void* target) { static_cast<std::string*>(target)->append(piece); },
                           &text);
    return text;
  }

  static size_t Count(const std::string& text, const std::string& piece) {
    size_t count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++count;
    return count;
  }

  static inline std::atomic<uint64_t> now{0};
  LcUString folder;
  TestAppInfo* appInfo = nullptr;
  LcUAppInfoProvider* previousAppInfo = nullptr;
  LcUFileURLImpl* engine = nullptr;
  RemoteTestProtocol* protocol = nullptr;
  std::vector<uint8_t> remoteData;
};
