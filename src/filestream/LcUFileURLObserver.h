#pragma once
#include "filestream/LcUFileURLProgress.h"

// Told the engine's status, at most once a status period.
class LcUFileURLObserver {
public:
  virtual ~LcUFileURLObserver() = default;
  virtual void OnStatus(void* argument, const LcUFileURLProgress& progress) = 0;
};
