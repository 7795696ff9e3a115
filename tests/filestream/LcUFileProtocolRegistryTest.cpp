#include <gtest/gtest.h>

#include "filestream/LcUFileMetaData.h"
#include "filestream/LcUFileProtocol.h"
#include "filestream/LcUFileProtocolRegistry.h"

namespace {
// A remote location that reports what the test tells it.
class FakeProtocol : public LcUFileProtocol {
public:
  bool CanDownload() override { return true; }
  bool CanStream() override { return true; }
  bool CanDownloadToSystemCache() override { return false; }
  bool IsRemote() override { return remote; }
  bool GetFileInfo(const char16_t* url, LcUFileMetaData& metadata) override {
    metadata = info;
    return answer;
  }
  bool DownloadFile(const char16_t*, const char16_t*, LcUDownloadProgressSink*) override { return false; }
  bool DownloadToCacheFile(const char16_t*, LcUDownloadProgressSink*, LcUString&) override { return false; }
  bool ReservedQuery() override { return false; }
  void* OpenHandle(const char16_t*, bool) override { return nullptr; }
  bool ReadFile(void*, void*, void*, int64_t, uint32_t, void*) override { return false; }
  bool WriteFile(void*, int64_t, uint32_t, const void*) override { return false; }
  bool CloseHandle(void*) override { return false; }
  bool RebaseURL(const char16_t*, const char16_t*, const char16_t*, LcUString& out) override {
    out.Assign(u"rebased");
    return true;
  }
  bool ResolveURL(const char16_t*, const char16_t*, LcUString& out) override {
    out.Assign(u"resolved");
    return true;
  }
  bool remote = true;
  bool answer = true;
  LcUFileMetaData info;
};

class RegistryTest : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(LcUFileProtocolRegistry::Initialize());
    registry = LcUFileProtocolRegistry::GetInstance();
    ASSERT_NE(nullptr, registry);
  }
  void TearDown() override { LcUFileProtocolRegistry::Terminate(); }
  LcUFileProtocolRegistry* registry = nullptr;
};
}  // namespace

TEST_F(RegistryTest, FindsByExactSchemeAndFallsBackToTheDefault) {
  FakeProtocol web, local;
  EXPECT_EQ(nullptr, registry->Find(u""));
  ASSERT_TRUE(registry->Register(u"http", &web));
  ASSERT_TRUE(registry->Register(u"file", &local));
  EXPECT_FALSE(registry->Register(u"http", &local));
  EXPECT_FALSE(registry->SetDefault(u"ftp"));
  ASSERT_TRUE(registry->SetDefault(u"file"));
  EXPECT_EQ(&web, registry->Find(u"http"));
  EXPECT_EQ(nullptr, registry->Find(u"HTTP"));
  EXPECT_EQ(nullptr, registry->Find(u"ftp"));
  EXPECT_EQ(&local, registry->Find(u""));
  EXPECT_EQ(&local, registry->Find(nullptr));
  // Registering for "" is refused while the default answers for it.
  EXPECT_FALSE(registry->Register(u"", &web));
  EXPECT_EQ(&web, registry->FindForURL(u"http://h/x"));
  EXPECT_EQ(&local, registry->FindForURL(u"C:\\x"));
  EXPECT_EQ(&local, registry->FindForURL(u"/x"));
  EXPECT_EQ(nullptr, registry->FindForURL(u":x"));
  EXPECT_EQ(nullptr, registry->FindForURL(nullptr));
  EXPECT_EQ(&local, registry->Unregister(u"file"));
  EXPECT_EQ(nullptr, registry->Unregister(u"file"));
  EXPECT_EQ(nullptr, registry->Find(u""));
  EXPECT_EQ(&web, registry->Unregister(u"http"));
}

TEST_F(RegistryTest, FreeFunctionsGoThroughTheProtocol) {
  FakeProtocol web;
  ASSERT_TRUE(registry->Register(u"http", &web));
  uint64_t size = 7;
  bool readOnly = false;
  EXPECT_FALSE(LcUFileProtocol::GetFileSize(u"http://h/x", &size, &readOnly));  // no size
  web.info.SetFileSize(99);
  web.info.SetPermissions(0);
  EXPECT_TRUE(LcUFileProtocol::GetFileSize(u"http://h/x", &size, &readOnly));
  EXPECT_EQ(99u, size);
  EXPECT_TRUE(readOnly);
  web.info.SetPermissions(LcUFileMetaData::ePERMISSION_WRITABLE);
  EXPECT_TRUE(LcUFileProtocol::GetFileSize(u"http://h/x", nullptr, &readOnly));
  EXPECT_FALSE(readOnly);
  web.answer = false;
  EXPECT_FALSE(LcUFileProtocol::GetFileSize(u"http://h/x", &size, &readOnly));
  EXPECT_FALSE(LcUFileProtocol::GetFileSize(u"ftp://h/x", &size, &readOnly));

  EXPECT_EQ(LcUFileProtocol::eLOCATION_REMOTE, LcUFileProtocol::GetLocationKind(u"http://h/x"));
  EXPECT_TRUE(web.UsesLocalCache());
  web.remote = false;
  EXPECT_EQ(LcUFileProtocol::eLOCATION_LOCAL, LcUFileProtocol::GetLocationKind(u"http://h/x"));
  EXPECT_FALSE(web.UsesLocalCache());
  EXPECT_EQ(LcUFileProtocol::eLOCATION_NONE, LcUFileProtocol::GetLocationKind(u"ftp://h/x"));

  LcUString out;
  EXPECT_TRUE(LcUFileProtocol::Resolve(u"http://h/a", u"b", out));
  EXPECT_EQ(std::u16string(u"resolved"), std::u16string(out.Get()));
  EXPECT_TRUE(LcUFileProtocol::Rebase(u"http://h/a", u"http://h/b", u"http://n/", out));
  EXPECT_EQ(std::u16string(u"rebased"), std::u16string(out.Get()));
  EXPECT_FALSE(LcUFileProtocol::Resolve(u"ftp://h/a", u"b", out));
  EXPECT_TRUE(out.IsEmpty());
  LcUFileProtocol::GetLeafNameOf(u"http://h/dir/leaf.txt", out);
  EXPECT_EQ(std::u16string(u"leaf.txt"), std::u16string(out.Get()));
  LcUFileProtocol::GetDisplayNameOf(u"http://h/a%20b", out);
  EXPECT_EQ(std::u16string(u"http://h/a%20b"), std::u16string(out.Get()));
  LcUFileProtocol::GetLeafNameOf(u"ftp://h/x", out);
  EXPECT_EQ(std::u16string(u"ftp://h/x"), std::u16string(out.Get()));
  registry->Unregister(u"http");
}

TEST(LcUFileProtocolTest, BaseDefaults) {
  FakeProtocol p;
  int32_t first = -1, last = -1;
  EXPECT_EQ(19, p.GetPrefetchRange(nullptr, 3, first, last));
  EXPECT_EQ(0, first);
  EXPECT_EQ(19, last);
  EXPECT_EQ(36, p.GetPrefetchRange(nullptr, 20, first, last));
  EXPECT_EQ(4, first);
  EXPECT_EQ(0, p.GetPrefetchRange(nullptr, 16, first, last) - 32);
  EXPECT_EQ(0, first);
  EXPECT_FALSE(p.HasThreadHandles());
  EXPECT_EQ(-1, p.ReadRange(nullptr, nullptr, nullptr, 0, 1, nullptr, nullptr));
  EXPECT_EQ(nullptr, p.CreateThreadHandle(nullptr));
  EXPECT_FALSE(p.DestroyThreadHandle(nullptr));
  EXPECT_EQ(nullptr, p.CreateRequest(nullptr, 0, 1));
  EXPECT_FALSE(p.DestroyRequest(nullptr));
}
