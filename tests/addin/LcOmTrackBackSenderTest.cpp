// The sender API as a viewer links it: the record it starts from, the paths
// it hands out, and one send at a time on the channel.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "TestProcess.h"
#include "TestRecordingReceiver.h"
#include "addin/LcOmTrackBackSender.h"
#include "addin/LcOmTrackBackSenderLock.h"
#include "addin/LcOmWin32TrackBackReceiver.h"
#include "environment/LcUResource.h"
#include "environment/LcUSession.h"
#include "environment/LcUSysFile.h"

namespace {
std::string Utf8(const char16_t* text) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(text, narrow, true);
  return narrow.Get();
}

// The file as the C library opens it, not through the file layer.
long SizeOf(const LcUString& path) {
  FILE* file = std::fopen(Utf8(path.Get()).c_str(), "rb");
  if (!file) return -1;
  std::fseek(file, 0, SEEK_END);
  long size = std::ftell(file);
  std::fclose(file);
  return size;
}

class TrackBackSender : public ::testing::Test {
protected:
  void SetUp() override {
    LcUResource::Initialize();
    std::string folder = TestProcess::MakeTempFolder("sender");
    TestProcess::SetEnvironment("XDG_CONFIG_HOME", folder);
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", folder);
    // Where the add-in's activation puts the record folder.
    LcUResource::SetSearchDirFromFolder(LcUResource::eDIR_USER_APP_SHARED, 1, LcUSession::GetProductLine());
  }
  void TearDown() override { LcUResource::Terminate(); }

  // Runs work on a thread of its own while this one handles the receiver's
  // messages, as a host's loop does; false if it didn't end within a minute.
  static bool WhilePumping(const std::function<void()>& work) {
    std::atomic<bool> done(false);
    std::thread worker([&] {
      work();
      done = true;
    });
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!done && std::chrono::steady_clock::now() < deadline) {
      LcOmWin32TrackBackReceiver::DispatchPending();
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    worker.join();
    LcOmWin32TrackBackReceiver::DispatchPending();
    return done;
  }

};
}  // namespace

TEST_F(TrackBackSender, ANewRecordHasNoTextsNoItemAndTheCamerasDefaults) {
  LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();
  EXPECT_EQ(0, record.DocumentPathLength());
  EXPECT_EQ(0, record.ItemFilePathLength());
  EXPECT_EQ(0, record.hasItem);
  EXPECT_EQ(1.0, record.camera.position.z);
  EXPECT_EQ(10.0, record.camera.farDistance);
  EXPECT_EQ(1.0, record.scale[2]);
}

TEST_F(TrackBackSender, PathsHandedOutOpenWithThePlainCLibrary) {
  LcUString record, item;
  ASSERT_TRUE(LcOmTrackBackSender::GetRecordPath(record));
  ASSERT_TRUE(LcOmTrackBackSender::GetItemFilePath(item));
  ASSERT_TRUE(LcOmTrackBackSender::WriteRecord(record.Get(), LcOmTrackBackSender::NewRecord()));
  ASSERT_TRUE(LcOmTrackBackSender::WriteItemFile(item.Get(), u"Shaft:1"));
  EXPECT_EQ(1728, SizeOf(record)) << Utf8(record.Get());
  EXPECT_EQ(7, SizeOf(item)) << Utf8(item.Get());
}

TEST_F(TrackBackSender, ARelativeItemFileGoesIntoTheRecordAbsolute) {
  LcUString expected;
  std::u16string current = std::filesystem::current_path().u16string();
  ASSERT_TRUE(LcOmTrackBackSender::MakeAbsolute(u"picks/item.txt", expected));
  EXPECT_TRUE(LcUSysFile::IsAbsolute(expected.Get()));
  EXPECT_EQ(0, std::u16string(expected.Get()).compare(0, current.size(), current)) << Utf8(expected.Get());

  const struct {
    const char16_t* given;
    int32_t hasItem;
    const char16_t* written;
  } cases[] = {
      {u"picks/item.txt", 1, expected.Get()},
      {u"C:\\picks\\item.txt", 1, u"C:\\picks\\item.txt"},
      {u"/picks/item.txt", 1, u"/picks/item.txt"},
      {u"picks/item.txt", 0, u"picks/item.txt"},  // no item: the field is not used
  };
  LcUString path;
  ASSERT_TRUE(LcOmTrackBackSender::GetRecordPath(path));
  for (const auto& c : cases) {
    LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();
    record.setItemFilePath(c.given);
    record.hasItem = c.hasItem;
    ASSERT_TRUE(LcOmTrackBackSender::WriteRecord(path.Get(), record));
    LcOmTrackBackRecord read;
    FILE* file = std::fopen(Utf8(path.Get()).c_str(), "rb");
    ASSERT_NE(nullptr, file);
    ASSERT_EQ(1u, std::fread(static_cast<void*>(&read), sizeof(read), 1, file));
    std::fclose(file);
    EXPECT_EQ(std::u16string(c.written), std::u16string(read.itemFilePath)) << Utf8(c.given);
  }
}

TEST_F(TrackBackSender, DeliveryWaitsNoLongerThanItsTimeout) {
  EXPECT_EQ(LcOmTrackBackSender::eNO_LISTENER, LcOmTrackBackSender::Deliver(200));
  RecordingReceiver receiver;
  // The receiver's thread is busy joining: nobody handles the message.
  LcOmTrackBackSender::Result result = LcOmTrackBackSender::eTAKEN;
  auto start = std::chrono::steady_clock::now();
  std::thread([&] { result = LcOmTrackBackSender::Deliver(200); }).join();
  EXPECT_EQ(LcOmTrackBackSender::eTIMED_OUT, result);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  ASSERT_TRUE(WhilePumping([&] { result = LcOmTrackBackSender::Deliver(20000); }));
  EXPECT_EQ(LcOmTrackBackSender::eTAKEN, result);
}

TEST_F(TrackBackSender, ASenderHoldingTheChannelMakesTheOthersBusy) {
  RecordingReceiver receiver;
  LcOmTrackBackRecord record = LcOmTrackBackSender::NewRecord();
  record.setDocumentPath(u"C:\\a.gpt");
  LcOmTrackBackSender::Result result = LcOmTrackBackSender::eTAKEN;
  LcUString item;
  ASSERT_TRUE(LcOmTrackBackSender::GetItemFilePath(item));
  LcUSysFile::Delete(item.Get(), true);
  {
    LcOmTrackBackSenderLock other(1000);
    ASSERT_TRUE(other.IsHeld());
    ASSERT_TRUE(WhilePumping([&] { result = LcOmTrackBackSender::Send(record, u"Shaft:1", 200); }));
    EXPECT_EQ(LcOmTrackBackSender::eBUSY, result);
    EXPECT_TRUE(receiver.records.empty());
    EXPECT_EQ(-1, SizeOf(item)) << "nothing is written while another sender holds the channel";
  }
  ASSERT_TRUE(WhilePumping([&] { result = LcOmTrackBackSender::Send(record, u"Shaft:1", 20000); }));
  EXPECT_EQ(LcOmTrackBackSender::eTAKEN, result);
  ASSERT_EQ(1u, receiver.records.size());
  EXPECT_EQ(1, receiver.records[0].hasItem);
}

TEST_F(TrackBackSender, ConcurrentSendersEachDeliverTheirOwnRecord) {
  RecordingReceiver receiver;
  const int kSenders = 4;
  std::vector<int> codes(kSenders, -1);
  ASSERT_TRUE(WhilePumping([&] {
    std::vector<std::thread> senders;
    for (int i = 0; i < kSenders; ++i)
      senders.emplace_back([&, i] {
        codes[i] = TestProcess::Run(TestProcess::NativePath(TW_VEERBACK),
                                    {"send", "--document", "C:\\doc" + std::to_string(i) + ".gpt", "--timeout", "30"},
                                    nullptr);
      });
    for (std::thread& sender : senders) sender.join();
  }));
  std::multiset<std::u16string> received;
  for (const LcOmTrackBackRecord& record : receiver.records) received.insert(record.documentPath);
  for (int i = 0; i < kSenders; ++i) {
    EXPECT_EQ(0, codes[i]) << i;
    std::string name = "C:\\doc" + std::to_string(i) + ".gpt";
    EXPECT_EQ(1u, received.count(std::u16string(name.begin(), name.end()))) << name;
  }
}
