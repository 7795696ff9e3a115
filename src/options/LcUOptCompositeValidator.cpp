#include "options/LcUOptCompositeValidator.h"

LcUOptCompositeValidator::LcUOptCompositeValidator(LcUOptionValidator* first, LcUOptionValidator* second) {
  Add(first);
  Add(second);
}

LcUOptCompositeValidator::~LcUOptCompositeValidator() {
  for (int32_t i = 0; i < members.Size(); ++i) members[i]->Release();
}

void LcUOptCompositeValidator::Add(LcUOptionValidator* member) {
  if (!member || !members.Add(member)) return;
  member->AddRef();
}

bool LcUOptCompositeValidator::IsDisabled(LcUOptionSet* set, int32_t index, void* context) {
  for (int32_t i = 0; i < members.Size(); ++i)
    if (members[i]->IsDisabled(set, index, context)) return true;
  return false;
}

bool LcUOptCompositeValidator::GetRange(LcUOptionSet* set, int32_t index, LcUData* minOut, LcUData* maxOut) {
  for (int32_t i = 0; i < members.Size(); ++i)
    if (members[i]->GetRange(set, index, minOut, maxOut)) return true;
  return false;
}

bool LcUOptCompositeValidator::Validate(LcUOptionSet* set, int32_t index, const LcUData& value,
                                        LcUString* errorOut) {
  for (int32_t i = 0; i < members.Size(); ++i)
    if (!members[i]->Validate(set, index, value, errorOut)) return false;
  return true;
}
