#pragma once
#include <vector>

#include "addin/LcOmWin32TrackBackReceiver.h"

// A receiver on the real channel that keeps every record it is handed.
class RecordingReceiver : public LcOmWin32TrackBackReceiver {
public:
  int onTrackBack(const LcOmTrackBackRecord& record) override {
    records.push_back(record);
    return 0;
  }
  std::vector<LcOmTrackBackRecord> records;
};
