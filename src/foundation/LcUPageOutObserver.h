#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

// Hears every page-out LcUPage runs, and may veto one.
class LcUPageOutObserver : public LcUDeletable {
public:
  ~LcUPageOutObserver() override = default;
  // Non-zero vetoes; 2 also means out of memory for good.
  virtual int32_t OnPageOutBegin() = 0;
  // 0 nothing done, 1 success, 2 failure, or the veto.
  virtual void OnPageOutEnd(int32_t result) = 0;
  virtual void LogUsage() {}
};
