#pragma once

// Told how far a whole-file download has come.
class LcUDownloadProgressSink {
public:
  virtual ~LcUDownloadProgressSink() = default;
  // From 0.0 at the start to 1.0 at the end.
  virtual void Progress(double fraction) = 0;
};
