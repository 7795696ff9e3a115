#pragma once
#include "addin/LcOmWin32TrackBackReceiver.h"

// The add-in's receiver: what a TrackBack record does in the host.
class LcGlfTrackBackReceiver : public LcOmWin32TrackBackReceiver {
public:
  int onTrackBack(const LcOmTrackBackRecord& record) override;
};
