#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocolRegistry.h"
#include "filestream/LcULocalFileProtocol.h"

namespace {
class LocalFileTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(LcULocalFileProtocol::Initialize());
    ASSERT_TRUE(LcUSysFile::MakeTempFolder(folder));
    LcUSysFile::Join(folder.Get(), u"data file.bin", path, true);
    data.resize(256 * 1024);
    for (size_t i = 0; i < data.size(); ++i) data[i] = char((i * 7 + i / 251) & 0xFF);
    LcUSysFileHandle file;
    ASSERT_TRUE(file.Open(path.Get(), LcUSysFileHandle::eACCESS_WRITE, LcUSysFileHandle::eCREATE_ALWAYS,
                          LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0,
                          LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE));
    ASSERT_EQ(data.size(), std::fwrite(data.data(), 1, data.size(), file.GetStream()));
    ASSERT_TRUE(file.Close());
  }
  void TearDown() override {
    LcUSysFile::Remove(folder.Get(), true, true);
    LcULocalFileProtocol::Terminate();
  }
  // "file:///" and the path with forward slashes.
  std::u16string FileURL() const {
    std::u16string url = u"file://";
    if (path[0] != '/') url += u'/';
    for (int32_t i = 0; i < path.Length(); ++i) url += path[i] == '\\' ? u'/' : path[i];
    return url;
  }
  LcUString folder;
  LcUString path;
  std::vector<char> data;
};
}  // namespace

TEST_F(LocalFileTest, OpensThroughTheRegistryAsURLOrPlainPath) {
  LcUFileProtocolRegistry* registry = LcUFileProtocolRegistry::GetInstance();
  std::u16string url = FileURL();
  // The plain path is "C:\..." under Windows.
  for (const char16_t* name : {url.c_str(), path.Get()}) {
    LcUFileProtocol* protocol = registry->FindForURL(name);
    ASSERT_NE(nullptr, protocol);
    EXPECT_FALSE(protocol->IsRemote());
    EXPECT_FALSE(protocol->UsesLocalCache());
    EXPECT_TRUE(protocol->CanStream());
    LcUFileMetaData info;
    ASSERT_TRUE(protocol->GetFileInfo(name, info));
    EXPECT_EQ(LcUFileMetaData::eMODIFICATION_TIME | LcUFileMetaData::eFILE_SIZE, info.GetMask());
    EXPECT_EQ(data.size(), info.GetFileSize());
    void* handle = protocol->OpenHandle(name, false);
    ASSERT_NE(nullptr, handle);
    char buffer[100];
    ASSERT_TRUE(protocol->ReadFile(handle, nullptr, nullptr, 1000, sizeof buffer, buffer));
    EXPECT_EQ(0, std::memcmp(buffer, data.data() + 1000, sizeof buffer));
    // Past the end fewer bytes arrive.
    EXPECT_FALSE(protocol->ReadFile(handle, nullptr, nullptr, int64_t(data.size()) - 10, sizeof buffer, buffer));
    EXPECT_FALSE(protocol->ReadFile(handle, nullptr, nullptr, -1, 1, buffer));
    EXPECT_FALSE(protocol->WriteFile(handle, 0, 1, buffer));
    EXPECT_TRUE(protocol->CloseHandle(handle));
  }
  uint64_t size = 0;
  bool readOnly = true;
  EXPECT_TRUE(LcUFileProtocol::GetFileSize(url.c_str(), &size, &readOnly));
  EXPECT_EQ(data.size(), size);
  EXPECT_TRUE(readOnly);  // no permissions reported: left as it was
  EXPECT_EQ(LcUFileProtocol::eLOCATION_LOCAL, LcUFileProtocol::GetLocationKind(url.c_str()));
  LcUString leaf;
  LcUFileProtocol::GetLeafNameOf(url.c_str(), leaf);
  EXPECT_EQ(std::u16string(u"data file.bin"), std::u16string(leaf.Get()));
}

TEST_F(LocalFileTest, MissingFilesAndBadTextsFailCleanly) {
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->Find(u"file");
  ASSERT_NE(nullptr, protocol);
  LcUString missing;
  LcUSysFile::Join(folder.Get(), u"missing.bin", missing);
  LcUFileMetaData info;
  EXPECT_FALSE(protocol->GetFileInfo(missing.Get(), info));
  EXPECT_FALSE(protocol->GetFileInfo(u":x", info));
  EXPECT_EQ(0u, info.GetMask());
  EXPECT_EQ(nullptr, protocol->OpenHandle(missing.Get(), false));
  EXPECT_EQ(nullptr, protocol->OpenHandle(u":x", true));
  EXPECT_FALSE(protocol->ReadFile(nullptr, nullptr, nullptr, 0, 1, &info));
  EXPECT_FALSE(protocol->WriteFile(nullptr, 0, 1, &info));
  EXPECT_FALSE(protocol->CloseHandle(nullptr));
  EXPECT_FALSE(LcUFileProtocol::GetFileSize(missing.Get(), nullptr, nullptr));
  EXPECT_EQ(LcUFileProtocol::eLOCATION_NONE, LcUFileProtocol::GetLocationKind(u":x"));
  EXPECT_EQ(LcUFileProtocol::eLOCATION_NONE, LcUFileProtocol::GetLocationKind(u"http://h/x"));
}

TEST_F(LocalFileTest, WritesAtOffsetsKeepTheRest) {
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->Find(u"file");
  void* handle = protocol->OpenHandle(path.Get(), true);
  ASSERT_NE(nullptr, handle);
  const char patch[] = "patched";
  ASSERT_TRUE(protocol->WriteFile(handle, 5000, 7, patch));
  char back[20];
  ASSERT_TRUE(protocol->ReadFile(handle, nullptr, nullptr, 4995, sizeof back, back));
  EXPECT_EQ(0, std::memcmp(back, data.data() + 4995, 5));
  EXPECT_EQ(0, std::memcmp(back + 5, patch, 7));
  EXPECT_EQ(0, std::memcmp(back + 12, data.data() + 5007, 8));
  EXPECT_TRUE(protocol->CloseHandle(handle));
  int64_t size = 0;
  ASSERT_TRUE(LcUSysFile::GetSize(path.Get(), size));
  EXPECT_EQ(int64_t(data.size()), size);
}

TEST_F(LocalFileTest, FourThreadsReadOneHandle) {
  LcUFileProtocol* protocol = LcUFileProtocolRegistry::GetInstance()->FindForURL(FileURL().c_str());
  ASSERT_NE(nullptr, protocol);
  void* handle = protocol->OpenHandle(FileURL().c_str(), false);
  ASSERT_NE(nullptr, handle);
  const uint32_t block = 4096;
  int failures[4] = {0, 0, 0, 0};
  std::vector<std::thread> workers;
  for (int t = 0; t < 4; ++t) {
    workers.emplace_back([&, t] {
      std::vector<char> buffer(block);
      for (int round = 0; round < 200; ++round) {
        int64_t offset = int64_t(((round * 4 + t) * 3001) % (data.size() - block));
        if (!protocol->ReadFile(handle, nullptr, nullptr, offset, block, buffer.data()) ||
            std::memcmp(buffer.data(), data.data() + offset, block) != 0)
          ++failures[t];
      }
    });
  }
  for (std::thread& w : workers) w.join();
  for (int f : failures) EXPECT_EQ(0, f);
  EXPECT_TRUE(protocol->CloseHandle(handle));
}
