#include "options/LcUOptionRecord.h"

#include "options/LcUExOptionSet.h"
#include "options/LcUOptionValidator.h"

LcUOptionRecord::~LcUOptionRecord() {
  SetValidator(nullptr);
  SetChild(nullptr);
}

LcUOptionRecord* LcUOptionRecord::Copy() const {
  LcUOptionRecord* copy = new LcUOptionRecord;
  if (!copy) return nullptr;
  copy->name = name;
  copy->className = className;
  copy->defineFlags = defineFlags;
  copy->state = state;
  copy->level = level;
  copy->SetValidator(validator);
  copy->value = value;
  if (childSet) {
    // Only the concrete set can be copied; any other is shared.
    LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(childSet);
    LcUOptionSet* child = concrete ? concrete->Copy() : childSet;
    if (!child) {
      delete copy;
      return nullptr;
    }
    copy->SetChild(child);
  }
  return copy;
}

LcUOptionRecord* LcUOptionRecord::CopyOf(LcUOptionSet* set, int32_t i) {
  if (LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(set)) return concrete->GetRecord(i)->Copy();
  LcUOptionRecord* copy = new LcUOptionRecord;
  if (!copy) return nullptr;
  copy->name = set->GetName(i);
  copy->className = set->GetClass(i);
  copy->defineFlags = set->GetDefineFlags(i);
  copy->state = set->GetState(i);
  copy->level = set->GetLevel(i);
  if (LcUOptionSet* child = set->GetValue(i, &copy->value)) copy->SetChild(child);
  return copy;
}

void LcUOptionRecord::SetValidator(LcUOptionValidator* next) {
  if (next) next->AddRef();
  if (validator) validator->Release();
  validator = next;
}

void LcUOptionRecord::SetChild(LcUOptionSet* next) {
  if (next) next->AddRef();
  if (childSet) {
    if (childSet != next) {
      childSet->parent = nullptr;
      childSet->name.Free();
    }
    childSet->Release();
  }
  childSet = next;
  if (next) value.Clear();
}

void LcUOptionRecord::SetValue(const LcUData& next) {
  SetChild(nullptr);
  value = next;
}
