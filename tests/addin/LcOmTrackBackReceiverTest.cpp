#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "TestProcess.h"
#include "TestRecordingReceiver.h"
#include "addin/LcOmTrackBackChannel.h"
#include "addin/LcOmTrackBackSender.h"
#include "addin/LcOmWin32TrackBackReceiver.h"
#include "environment/LcUResource.h"
#include "environment/LcUSession.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

namespace {
std::vector<std::u16string> warnings;

int RecordWarning(int, LcUComponent*, int32_t, void*, const char16_t* message) {
  warnings.emplace_back(message);
  return 1;
}

// Through the file layer, which takes either separator on every platform.
FILE* OpenFile(LcUSysFileHandle& file, const LcUString& path, bool write) {
  file.Open(path.Get(), write ? LcUSysFileHandle::eACCESS_WRITE : LcUSysFileHandle::eACCESS_READ,
            write ? LcUSysFileHandle::eCREATE_ALWAYS : LcUSysFileHandle::eOPEN_EXISTING, LcUSysFileHandle::eMODE_BINARY,
            LcUSysFileHandle::eDENY_NONE, 0, LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE);
  return file.GetStream();
}

class TrackBackReceiver : public ::testing::Test {
protected:
  void SetUp() override {
    // The receivers made here listen in the test's folder, not where a real host may.
    TestProcess::SetEnvironment("XDG_RUNTIME_DIR", TestProcess::MakeTempFolder("runtime"));
    LcUResource::Initialize();
    warnings.clear();
    LcUSysError::SetHandler(LcUError::eWARNING, nullptr, -1, &RecordWarning);
  }
  void TearDown() override {
    LcUSysError::RemoveHandler(LcUError::eWARNING, nullptr, -1);
    LcUResource::Terminate();
  }

  // The record file the receiver reads, filled with size bytes of a record.
  static void WriteRecordFile(const LcUString& path, size_t size) {
    LcOmTrackBackRecord record;
    record.setDocumentPath(u"C:\\models\\bracket.gpt");
    record.setItemFilePath(u"");
    record.hasItem = 0;
    std::vector<unsigned char> bytes(size, 0x5A);
    if (size) std::memcpy(bytes.data(), &record, size < sizeof(record) ? size : sizeof(record));
    LcUSysFileHandle file;
    ASSERT_NE(nullptr, OpenFile(file, path, true));
    if (size) std::fwrite(bytes.data(), 1, bytes.size(), file.GetStream());
    EXPECT_TRUE(file.Close());
  }
};
}  // namespace

TEST_F(TrackBackReceiver, RecordPathIsUnderTheSharedSearchDirectory) {
  LcUResource::SetSearchDir(LcUResource::eDIR_USER_APP_SHARED, u"C:\\Users\\me\\AppData\\Roaming\\Hollimar Tarnwicket\\");
  RecordingReceiver receiver;
  EXPECT_EQ(u"C:\\Users\\me\\AppData\\Roaming\\Hollimar Tarnwicket\\trackback\\LcGlfPlugin",
            std::u16string(receiver.GetRecordPath().Get()));
  EXPECT_EQ(&receiver, LcOmWin32TrackBackReceiver::GetCurrent());
}

TEST_F(TrackBackReceiver, ReadsOnlyAWholeRecord) {
  std::string folder = TestProcess::MakeTempFolder("receiver");
  LcUString shared;
  LcUString::UTF8ToUTF16(folder.c_str(), -1, shared);
  LcUResource::SetSearchDir(LcUResource::eDIR_USER_APP_SHARED, shared.Get());
  RecordingReceiver receiver;
  LcOmTrackBackSender::WriteRecord(receiver.GetRecordPath().Get(), LcOmTrackBackRecord());  // makes the folder

  struct Case {
    size_t size;
    size_t calls;
    const char16_t* warning;
  };
  const Case cases[] = {{1728, 1, nullptr}, {1727, 0, u"Trackback: file read failed"}, {1729, 1, nullptr},
                        {0, 0, u"Trackback: file read failed"}};
  for (const Case& c : cases) {
    receiver.records.clear();
    warnings.clear();
    WriteRecordFile(receiver.GetRecordPath(), c.size);
    receiver.Receive();
    ASSERT_EQ(c.calls, receiver.records.size()) << c.size;
    if (c.calls) {
      EXPECT_EQ(u"C:\\models\\bracket.gpt", std::u16string(receiver.records[0].documentPath));
    }
    if (c.warning) {
      ASSERT_EQ(1u, warnings.size());
      EXPECT_EQ(c.warning, warnings[0]);
    } else {
      EXPECT_TRUE(warnings.empty());
    }
  }
  // The same file acts again: no sequence number, no duplicate detection.
  receiver.records.clear();
  WriteRecordFile(receiver.GetRecordPath(), 1728);
  receiver.Receive();
  receiver.Receive();
  EXPECT_EQ(2u, receiver.records.size());
}

TEST_F(TrackBackReceiver, MissingFileIsReportedWithItsFullPath) {
  std::string folder = TestProcess::MakeTempFolder("missing");
  LcUString shared;
  LcUString::UTF8ToUTF16(folder.c_str(), -1, shared);
  LcUResource::SetSearchDir(LcUResource::eDIR_USER_APP_SHARED, shared.Get());
  RecordingReceiver receiver;
  receiver.Receive();
  EXPECT_TRUE(receiver.records.empty());
  ASSERT_EQ(1u, warnings.size());
  EXPECT_EQ(u"Trackback: Can't open file " + std::u16string(receiver.GetRecordPath().Get()), warnings[0]);
}

TEST_F(TrackBackReceiver, AnotherProcessSendsAndEachMessageActsOnce) {
  // The sender finds the record folder the way the add-in's activation sets it.
  std::string home = TestProcess::MakeTempFolder("sender");
  TestProcess::SetEnvironment("XDG_CONFIG_HOME", home);
  TestProcess::SetEnvironment("XDG_RUNTIME_DIR", home);
  LcUResource::SetSearchDirFromFolder(LcUResource::eDIR_USER_APP_SHARED, 1, LcUSession::GetProductLine());
  std::string veerback = TestProcess::NativePath(TW_VEERBACK);
  {
    RecordingReceiver receiver;
    EXPECT_TRUE(LcOmTrackBackSender::IsListenerRunning());
    const std::vector<std::string> send = {"send", "--document", "C:\\work\\gearbox.gam", "--item", "Shaft:1",
                                           "--ortho", "--height", "10", "--position", "1,2,3", "--far", "250"};
    EXPECT_EQ(0, TestProcess::Run(veerback, send, &LcOmWin32TrackBackReceiver::DispatchPending));
    EXPECT_EQ(0, TestProcess::Run(veerback, send, &LcOmWin32TrackBackReceiver::DispatchPending));
    ASSERT_EQ(2u, receiver.records.size());
    const LcOmTrackBackRecord& record = receiver.records[1];
    EXPECT_EQ(u"C:\\work\\gearbox.gam", std::u16string(record.documentPath));
    EXPECT_EQ(1, record.hasItem);
    EXPECT_EQ(1, record.camera.projection);
    EXPECT_EQ(3.0, record.camera.position.z);
    EXPECT_EQ(250.0, record.camera.farDistance);
    EXPECT_EQ(10.0, LcOmTrackBackRecord().camera.farDistance);
    // The item text sits unterminated in the file the record names.
    LcUString itemPath(record.itemFilePath);
    LcUSysFileHandle item;
    ASSERT_NE(nullptr, OpenFile(item, itemPath, false));
    char text[32] = {};
    size_t n = std::fread(text, 1, sizeof(text) - 1, item.GetStream());
    EXPECT_EQ("Shaft:1", std::string(text, n));
  }
  // Once the receiver is gone nobody is listening.
  EXPECT_FALSE(LcOmTrackBackSender::IsListenerRunning());
  EXPECT_EQ(2, TestProcess::Run(veerback, {"send", "--document", "C:\\a.gpt"}, nullptr));
}
