#include <cstdio>

#include "addin/LcOmWin32TrackBackReceiver.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"
#include "foundation/LcUErrorStream.h"

void LcOmWin32TrackBackReceiver::Receive() {
  LcOmTrackBackRecord record;
  if (!ReadRecord(recordPath.Get(), record)) return;
  onTrackBack(record);
}

bool LcOmWin32TrackBackReceiver::ReadRecord(const char16_t* path, LcOmTrackBackRecord& record) {
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0,
                 LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE)) {
    LcUErrorStream report(LcUError::eWARNING, nullptr);
    report << "Trackback: Can't open file " << path;
    report.Post();
    return false;
  }
  // A short file is closed here as well, by the handle: left open, every bad
  // record would cost the host a file handle for the rest of its session.
  if (std::fread(&record, sizeof(record), 1, file.GetStream()) != 1) {
    LcUError::PostF(LcUError::eWARNING, nullptr, "Trackback: file read failed");
    return false;
  }
  if (!file.Close()) {
    LcUError::PostF(LcUError::eWARNING, nullptr, "Trackback: file close failed");
    return false;
  }
  return true;
}
