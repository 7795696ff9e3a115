#pragma once
#include "options/LcUOptionValidator.h"
#include "serial/LcUVector.h"

// Several validators as one: any member may disable or refuse.
class LcUOptCompositeValidator : public LcUOptionValidator {
public:
  LcUOptCompositeValidator() = default;
  LcUOptCompositeValidator(LcUOptionValidator* first, LcUOptionValidator* second);
  ~LcUOptCompositeValidator() override;

  // A null member is skipped.
  void Add(LcUOptionValidator* member);

  bool IsDisabled(LcUOptionSet* set, int32_t index, void* context) override;
  bool GetRange(LcUOptionSet* set, int32_t index, LcUData* minOut, LcUData* maxOut) override;
  bool Validate(LcUOptionSet* set, int32_t index, const LcUData& value, LcUString* errorOut) override;

  LcUVector<LcUOptionValidator*> members;
};
