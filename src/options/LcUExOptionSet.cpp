#include "options/LcUExOptionSet.h"

#include <cstdio>

#include "options/LcUOptionValidator.h"

namespace {
// A record that joins an array is no longer a default, nor is anything
// below it outside nested arrays.
void ClearDefault(LcUOptionRecord* record) {
  record->state &= ~uint32_t(LcUOptionSet::eDEFAULT);
  LcUExOptionSet* child = dynamic_cast<LcUExOptionSet*>(record->childSet);
  if (!child || child->IsArray()) return;
  for (int32_t i = 0; i < child->GetCount(); ++i) ClearDefault(child->GetRecord(i));
}
}  // namespace

LcUExOptionSet::~LcUExOptionSet() {
  for (int32_t i = 0; i < options.Size(); ++i) delete options[i];
}

bool LcUExOptionSet::IsDisabled(int32_t i, void* context) {
  LcUOptionValidator* validator = options[i]->validator;
  return validator && validator->IsDisabled(this, i, context);
}

bool LcUExOptionSet::GetRange(int32_t i, LcUData* minOut, LcUData* maxOut) {
  LcUOptionValidator* validator = options[i]->validator;
  return validator && validator->GetRange(this, i, minOut, maxOut);
}

LcUOptionSet* LcUExOptionSet::GetValue(int32_t i, LcUData* out) {
  if (out) *out = options[i]->value;
  return options[i]->childSet;
}

bool LcUExOptionSet::SetValue(int32_t i, const LcUData& value, LcUString* error) {
  LcUOptionValidator* validator = options[i]->validator;
  if (validator && !validator->Validate(this, i, value, error)) return false;
  options[i]->SetValue(value);
  return true;
}

bool LcUExOptionSet::Insert(int32_t i) {
  if (!IsArray() || options.Size() == 0 || i < 0 || i > options.Size()) return false;
  LcUOptionRecord* copy = options[i == options.Size() ? i - 1 : i]->Copy();
  if (!copy) return false;
  // Named by its place, so that growing at the end keeps index names.
  char digits[16];
  std::snprintf(digits, sizeof digits, "%d", int(i));
  copy->name = digits;
  return InsertRecord(i, copy);
}

bool LcUExOptionSet::Remove(int32_t i) {
  if (i < 0 || i >= options.Size()) return false;
  delete options[i];
  options.RemoveAt(i);
  NoteChange();
  return true;
}

bool LcUExOptionSet::Append(LcUOptionRecord* record) {
  return InsertRecord(options.Size(), record);
}

bool LcUExOptionSet::InsertRecord(int32_t i, LcUOptionRecord* record) {
  if (!record) return false;
  if (!options.Insert(i, record)) {
    delete record;
    return false;
  }
  if (IsArray()) ClearDefault(record);
  Adopt(record);
  NoteChange();
  return true;
}

bool LcUExOptionSet::AddRecord(LcUOptionRecord* record) {
  if (!record) return false;
  if (!options.Add(record)) {
    delete record;
    return false;
  }
  Adopt(record);
  return true;
}

void LcUExOptionSet::ReplaceChild(int32_t i, LcUOptionSet* set) {
  options[i]->SetChild(set);
  Adopt(options[i]);
  NoteChange();
}

void LcUExOptionSet::ReplaceRecord(int32_t i, LcUOptionRecord* record) {
  delete options[i];
  options[i] = record;
  Adopt(record);
  NoteChange();
}

LcUExOptionSet* LcUExOptionSet::Copy() const {
  LcUExOptionSet* copy = new LcUExOptionSet(setFlags);
  if (!copy) return nullptr;
  copy->className = className;
  for (int32_t i = 0; i < options.Size(); ++i) {
    if (!copy->AddRecord(options[i]->Copy())) {
      delete copy;
      return nullptr;
    }
  }
  return copy;
}

void LcUExOptionSet::MarkDefault() {
  // Elements of arrays never count as defaults: the array does.
  if (IsArray()) return;
  for (int32_t i = 0; i < options.Size(); ++i) {
    options[i]->state |= eDEFAULT;
    LcUExOptionSet* child = dynamic_cast<LcUExOptionSet*>(options[i]->childSet);
    if (child) child->MarkDefault();
  }
}

void LcUExOptionSet::Adopt(LcUOptionRecord* record) {
  if (!record->childSet) return;
  record->childSet->parent = this;
  record->childSet->name = record->name;
}
