#pragma once
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "FileURLTesting.h"
#include "environment/LcUSysFileIterator.h"
#include "filestream/LcUCacheManager.h"

// The engine over the remote test protocol with its files in the local
// cache under the test's application data folder.
class CacheTest : public FileURLTest {
protected:
  void SetUp() override {
    FileURLTest::SetUp();
    protocol->SetRevision(u"r1");
    cache = LcUCacheManager::GetInstance();
    ASSERT_NE(nullptr, cache);
  }

  // A later run: the engine stopped and started again forgets all it was told.
  void StopEngine() {
    LcUAppInfo::SetProvider(previousAppInfo);
    LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
    LcUFileURL::Terminate();
  }

  void StartEngine() {
    ASSERT_TRUE(LcUFileURL::Initialize());
    InstallAppInfo();
    engine = LcUFileURL::GetInstance();
    cache = LcUCacheManager::GetInstance();
    ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
    engine->SetClock([] { return now.load(); });
    SetNetwork(true);
  }

  std::u16string Root() const { return PathOf(u"appdata") + u"/LocalCache"; }

  // Opens, reads [from, to) in whole, closes; the reads it took.
  size_t Stream(const std::u16string& url, uint64_t from, uint64_t to) {
    size_t before = protocol->Reads().size();
    LcUFileURLFile* file = OpenRead(url);
    EXPECT_NE(nullptr, file);
    if (!file) return 0;
    std::vector<uint8_t> out(size_t(to - from));
    engine->PrepareRead(file, from, to - from);
    EXPECT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, from, out.data(), uint32_t(out.size())));
    EXPECT_TRUE(std::equal(out.begin(), out.end(), remoteData.begin() + ptrdiff_t(from)));
    engine->Close(file);
    return protocol->Reads().size() - before;
  }

  // The entry folder the open of url takes now, and its data file.
  std::u16string EntryOf(const std::u16string& url, std::u16string* dataPath = nullptr) {
    LcUFileURLFile* file = OpenRead(url);
    EXPECT_NE(nullptr, file);
    if (!file) return std::u16string();
    std::u16string path(file->localPath.Get());
    engine->Close(file);
    if (dataPath) *dataPath = path;
    size_t slash = path.find_last_of(u"/\\");
    return path.substr(0, slash);
  }

  static std::string Text(const std::u16string& path) {
    std::string text;
    if (FILE* file = std::fopen(Narrow(path).c_str(), "rb")) {
      for (int c; (c = std::fgetc(file)) != EOF;) text += char(c);
      std::fclose(file);
    }
    return text;
  }

  static void WriteText(const std::u16string& path, const std::string& text) {
    FILE* file = std::fopen(Narrow(path).c_str(), "wb");
    ASSERT_NE(nullptr, file);
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }

  static bool Exists(const std::u16string& path) { return LcUSysFile::Exists(path.c_str()); }

  // The names in a folder, sorted.
  static std::vector<std::u16string> Names(const std::u16string& folder) {
    std::vector<std::u16string> names;
    LcUString name;
    for (LcUSysFileIterator item(folder.c_str()); item.IsValid(); item.Next()) {
      item.GetName(name);
      names.emplace_back(name.Get());
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  LcUCacheManager* cache = nullptr;
};
