#pragma once

class LcUFileURLFile;

// Told when the last missing block of a remote file has arrived.
class LcUFileURLCompletionHook {
public:
  virtual ~LcUFileURLCompletionHook() = default;
  virtual void OnComplete(LcUFileURLFile* file) = 0;
};
