#pragma once
#include "foundation/LcUStringA.h"
#include "options/LcUOptionValidator.h"
#include "serial/LcUData.h"

// Greys an option out unless another option holds a given value. The other
// option is found from the asking set when `relative` is non-zero, else
// from the root.
class LcUOptValueEnabler : public LcUOptionValidator {
public:
  LcUOptValueEnabler(const LcUData& value, const char* path, uint32_t relative)
      : value(value), path(path), relative(relative) {}

  bool IsDisabled(LcUOptionSet* set, int32_t index, void* context) override;

  LcUData value;
  LcUStringA path;
  uint32_t relative;
};
