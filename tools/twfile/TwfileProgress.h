#pragma once
#include <chrono>
#include <cstdint>

#include "filestream/LcUFileURLObserver.h"
#include "foundation/LcUString.h"

class LcUFileURLImpl;

// The progress of a whole-file copy on standard error: one line redrawn
// on a terminal, a plain line every tenth otherwise. The engine's status
// calls drive it; the copy moves it on.
class TwfileProgress : public LcUFileURLObserver {
public:
  TwfileProgress(LcUFileURLImpl* engine, const char16_t* url, uint64_t total);
  ~TwfileProgress() override;
  void Advance(uint64_t bytes) { done = bytes; }
  void OnStatus(void* argument, const LcUFileURLProgress& progress) override;
  // The last line, whatever the time.
  void Finish();

private:
  void Show(bool last);
  LcUFileURLImpl* engine;
  LcUString url;
  uint64_t total;
  uint64_t done = 0;
  uint32_t cachedAtStart = 0;
  int32_t lastTenth = -1;
  bool terminal;
  std::chrono::steady_clock::time_point start;
};
