#pragma once
#include <cstdint>

#include "addin/LcGlfCom.h"
#include "addin/LcOmTrackBackListener.h"
#include "addin/LcOmTrackBackRecord.h"
#include "foundation/LcUString.h"

// The listening end of the TrackBack channel. A named, process-wide event
// with no payload says that the record file is to be read; the record goes
// to onTrackBack on the thread that made the receiver. One receiver lives
// at a time, reached through a process-wide pointer.
class LcOmWin32TrackBackReceiver {
public:
  LcOmWin32TrackBackReceiver();
  virtual ~LcOmWin32TrackBackReceiver();
  LcOmWin32TrackBackReceiver(const LcOmWin32TrackBackReceiver&) = delete;
  LcOmWin32TrackBackReceiver& operator=(const LcOmWin32TrackBackReceiver&) = delete;

  // Called once per good message; what it returns is ignored.
  virtual int onTrackBack(const LcOmTrackBackRecord& record) = 0;

  // Borrowed: neither referenced here nor released.
  void SetApplication(IDispatch* app) { application = app; }
  IDispatch* GetApplication() const { return application; }
  const LcUString& GetRecordPath() const { return recordPath; }
  uint32_t GetMessageId() const { return messageId; }

  static LcOmWin32TrackBackReceiver* GetCurrent();
  // Handles the notifications waiting on this thread, as a host's own
  // message loop does.
  static void DispatchPending();
  // What a Linux host's loop polls for the receiver; -1 where the host's
  // window messages bring the notification.
  static int GetDescriptor();

  // The receive step: read the record and hand it on; a record that can't be
  // read is reported and dropped.
  void Receive();

protected:
  // True only if the record was read whole and the file closed cleanly.
  static bool ReadRecord(const char16_t* path, LcOmTrackBackRecord& record);

private:
  uint32_t messageId = 0;
  LcOmTrackBackListener listener;
  LcUString recordPath;
  IDispatch* application = nullptr;
};
