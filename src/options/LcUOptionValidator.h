#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

class LcUData;
class LcUOptionSet;
class LcUString;

// Decides what may be assigned to an option, and answers the queries of
// option dialogs. Counted, starting at 0: the first option that takes it
// holds the first count, and the last release deletes it.
class LcUOptionValidator : public LcUDeletable {
public:
  void AddRef() { ++refCount; }
  void Release() {
    if (--refCount <= 0) delete this;
  }

  virtual bool IsDisabled(LcUOptionSet* set, int32_t index, void* context);
  // Either range end may be null.
  virtual bool GetRange(LcUOptionSet* set, int32_t index, LcUData* minOut, LcUData* maxOut);
  virtual bool Validate(LcUOptionSet* set, int32_t index, const LcUData& value, LcUString* errorOut);
  ~LcUOptionValidator() override = default;

  int32_t refCount = 0;
};
