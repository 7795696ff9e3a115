#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

class LcUPageOutProgress;

// A holder of memory that can give some back when LcUPage asks.
class LcUPageOut : public LcUDeletable {
public:
  ~LcUPageOut() override = default;
  // Frees what it can for this pass, calling progress->Check after each
  // unit freed and storing the answer in progress->done. Non-zero: nothing
  // more to give in any pass. `a` and `b` are the caller's, passed through.
  virtual int32_t PageOut(int32_t a, int32_t b, int32_t c, int32_t pass, LcUPageOutProgress* progress) = 0;
};
