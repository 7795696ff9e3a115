#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

// Tells a page-out when enough has been given back.
class LcUPageOutProgress : public LcUDeletable {
public:
  ~LcUPageOutProgress() override = default;
  // `flag` non-zero: a unit was just freed.
  virtual int32_t Check(int32_t flag) = 0;

  int32_t done = 0;
  int32_t reserved = 1;
};
