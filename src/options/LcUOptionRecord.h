#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"
#include "foundation/LcUStringA.h"
#include "serial/LcUData.h"

class LcUOptionSet;
class LcUOptionValidator;

// One option of a set: a leaf with a value, or a branch with a child set,
// never both. Holds counts on its validator and its child.
class LcUOptionRecord : public LcUDeletable {
public:
  LcUOptionRecord() = default;
  LcUOptionRecord(const LcUOptionRecord&) = delete;
  LcUOptionRecord& operator=(const LcUOptionRecord&) = delete;
  ~LcUOptionRecord() override;

  // A deep copy: the child set is copied too. Null when memory ran out.
  LcUOptionRecord* Copy() const;
  // A copy of record `i` of any set; a set other than the concrete one
  // lends its faces but no validator, and its child is shared.
  static LcUOptionRecord* CopyOf(LcUOptionSet* set, int32_t i);
  void SetValidator(LcUOptionValidator* next);
  // Releases any child; the set takes a count.
  void SetChild(LcUOptionSet* next);
  // Releases any child.
  void SetValue(const LcUData& next);

  LcUStringA name;
  LcUStringA className;
  uint32_t defineFlags = 0;
  uint32_t state = 0;
  int32_t level = 0;
  LcUOptionValidator* validator = nullptr;
  LcUOptionSet* childSet = nullptr;
  LcUData value;
};
