#include "foundation/LcUError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "options/LcUOptionLock.h"
#include "options/LcUOptionValidator.h"

namespace {
void Report(const char* text, const char* path) {
  LcUError::PostF(LcUError::eERROR, &LcUOption::component, "%s%s", text, path ? path : "");
}

LcUOptionRecord* NewRecord(const LcUStringA& name, int32_t level, uint32_t flags, const char* className,
                           LcUOptionValidator* validator) {
  LcUOptionRecord* record = new LcUOptionRecord;
  if (!record) return nullptr;
  record->name = name;
  record->level = level;
  record->defineFlags = flags;
  record->className = className;
  record->state = LcUOptionSet::eDEFAULT;
  record->SetValidator(validator);
  return record;
}

// The saved value, when there is one of the option's kind that differs
// from the default, goes in through the validator at the record's place.
void TakeSaved(const char* path, LcUExOptionSet* place, int32_t i) {
  int32_t j = -1;
  LcUOptionSet* holder = LcUOption::FindOption(LcUOption::GetSavedRoot(), path, j);
  LcUData value;
  const LcUData& initial = place->GetRecord(i)->value;
  if (j < 0 || holder->GetValue(j, &value) || value.GetTag() != initial.GetTag() || LcUData::Equal(value, initial))
    return;
  if (!place->SetValue(i, value, nullptr)) {
    LcUError::PostF(LcUError::eWARNING, &LcUOption::component, "Saved value refused, default kept: %s", path);
    return;
  }
  place->SetState(i, holder->GetState(j));
}

// Readies a set for the tree: its records become defaults, and saved
// values for its path merge in. Returns the copy for the default tree.
LcUOptionSet* PrepareSet(const char* path, LcUOptionSet* set) {
  LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(set);
  if (!concrete) return set;
  concrete->MarkDefault();
  LcUExOptionSet* initial = concrete->Copy();
  if (!initial) return nullptr;
  int32_t j = -1;
  LcUOptionSet* holder = LcUOption::FindOption(LcUOption::GetSavedRoot(), path, j);
  LcUOptionSet* savedSet = j >= 0 ? holder->GetValue(j, nullptr) : nullptr;
  if (!savedSet) return initial;
  int32_t status =
      LcUOption::MergeSet(set, savedSet, LcUOption::eMERGE_DEFAULT_IF_SOURCE | LcUOption::eMERGE_COPY_MARK, false);
  if (status & LcUOption::eREFUSED)
    LcUError::PostF(LcUError::eWARNING, &LcUOption::component, "Saved value refused, default kept: %s", path);
  LcUExOptionSet* marked = LcUOption::CopyFiltered(savedSet, LcUOption::eONLY_DEFAULT);
  if (marked) {
    marked->AddRef();
    LcUOption::MergeSet(initial, marked, LcUOption::eMERGE_COPY_MARK, false);
    marked->Release();
  }
  return initial;
}

// A count held for a scope: a set handed in is deleted on failure, as
// the tree would have done had it taken it.
struct SetHold {
  explicit SetHold(LcUOptionSet* held) : set(held) {
    if (set) set->AddRef();
  }
  ~SetHold() {
    if (set) set->Release();
  }
  SetHold(const SetHold&) = delete;
  SetHold& operator=(const SetHold&) = delete;
  LcUOptionSet* set;
};

// The set in the default tree that matches the parent of `path`.
LcUExOptionSet* DefaultParent(const char* path) {
  LcUStringA last;
  LcUStringA parentPath;
  LcUOption::SplitPath(path, last, parentPath);
  return dynamic_cast<LcUExOptionSet*>(LcUOption::GetSet(LcUOption::GetDefaultRoot(), parentPath.Get()));
}
}  // namespace

bool LcUOption::DefineData(const char* path, const LcUData& value, int32_t level, uint32_t flags,
                           const char* className, LcUOptionValidator* validator) {
  LcUOptionLock lock;
  LcUStringA name;
  LcUExOptionSet* place = FindParentForNewOption(GetPresentRoot(), path, name);
  if (!place) {
    Report("Option malformed or already defined: ", path);
    return false;
  }
  LcUExOptionSet* defaultPlace = FindParentForNewOption(GetDefaultRoot(), path, name);
  LcUOptionRecord* record = NewRecord(name, level, flags, className, validator);
  if (!record) return false;
  record->value = value;
  if (!place->Append(record)) return false;
  int32_t i = place->GetCount() - 1;
  TakeSaved(path, place, i);
  // The default tree always holds the default.
  LcUOptionRecord* initial = defaultPlace ? record->Copy() : nullptr;
  if (initial && !(initial->state & LcUOptionSet::eDEFAULT)) {
    initial->value = value;
    initial->state = LcUOptionSet::eDEFAULT;
  }
  if (initial) defaultPlace->Append(initial);
  return true;
}

bool LcUOption::DefineData(LcUOptionSet* set, const char* path, const LcUData& value, int32_t level,
                           uint32_t flags, const char* className, LcUOptionValidator* validator) {
  LcUStringA name;
  LcUExOptionSet* place = FindParentForNewOption(set, path, name);
  if (!place) {
    Report("LcUExOptionSet::Define: Option malformed or already defined: ", path);
    return false;
  }
  LcUOptionRecord* record = NewRecord(name, level, flags, className, validator);
  if (!record) return false;
  record->value = value;
  return place->Append(record);
}

bool LcUOption::DefineSet(const char* path, LcUOptionSet* set, int32_t level, uint32_t flags,
                          const char* className) {
  LcUOptionLock lock;
  SetHold hold(set);
  LcUStringA name;
  LcUExOptionSet* place = set ? FindParentForNewOption(GetPresentRoot(), path, name) : nullptr;
  if (!place) {
    Report("Option malformed or already defined: ", path);
    return false;
  }
  LcUExOptionSet* defaultPlace = FindParentForNewOption(GetDefaultRoot(), path, name);
  SetHold initial(PrepareSet(path, set));
  LcUOptionRecord* record = NewRecord(name, level, flags, className, nullptr);
  if (!record) return false;
  record->SetChild(set);
  if (!place->Append(record)) return false;
  LcUOptionRecord* copy = initial.set && defaultPlace ? NewRecord(name, level, flags, className, nullptr) : nullptr;
  if (copy) {
    copy->SetChild(initial.set);
    defaultPlace->Append(copy);
  }
  return true;
}

bool LcUOption::DefineSet(LcUOptionSet* parent, const char* path, LcUOptionSet* set, int32_t level,
                          uint32_t flags, const char* className) {
  SetHold hold(set);
  LcUStringA name;
  LcUExOptionSet* place = set ? FindParentForNewOption(parent, path, name) : nullptr;
  if (!place) {
    Report("LcUExOptionSet::DefineSet: Option malformed or already defined: ", path);
    return false;
  }
  if (LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(set)) concrete->MarkDefault();
  LcUOptionRecord* record = NewRecord(name, level, flags, className, nullptr);
  if (!record) return false;
  record->SetChild(set);
  return place->Append(record);
}

bool LcUOption::Redefine(const char* path, LcUOptionSet* set) {
  LcUOptionLock lock;
  SetHold hold(set);
  int32_t i = -1;
  LcUOptionSet* holder = FindOption(GetPresentRoot(), path, i);
  if (i < 0 || !set) {
    Report("Option malformed or not defined: ", path);
    return false;
  }
  LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(holder);
  if (!concrete) {
    Report("Can't redefine option unless in LcUExOptionSet: ", path);
    return false;
  }
  SetHold initial(PrepareSet(path, set));
  concrete->ReplaceChild(i, set);
  LcUExOptionSet* defaultHolder = DefaultParent(path);
  if (initial.set && defaultHolder && i < defaultHolder->GetCount()) defaultHolder->ReplaceChild(i, initial.set);
  return true;
}

bool LcUOption::Undefine(const char* path) {
  LcUOptionLock lock;
  int32_t i = -1;
  LcUOptionSet* holder = FindOption(GetPresentRoot(), path, i);
  if (i < 0) {
    Report("Option malformed or not defined: ", path);
    return false;
  }
  LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(holder);
  if (!concrete) {
    Report("Can't undefine option unless in LcUExOptionSet: ", path);
    return false;
  }
  LcUExOptionSet* defaultHolder = DefaultParent(path);
  concrete->Remove(i);
  if (defaultHolder) defaultHolder->Remove(i);
  return true;
}

bool LcUOption::DefineBooleanAndGet(const char* path, bool value, int32_t level, uint32_t flags,
                                    const char* className, LcUOptionValidator* validator) {
  LcUOptionLock lock;
  DefineBoolean(path, value, level, flags, className, validator);
  return GetBoolean(path);
}

double LcUOption::DefineFloatAndGet(const char* path, double value, int32_t level, uint32_t flags,
                                    const char* className, LcUOptionValidator* validator) {
  LcUOptionLock lock;
  DefineFloat(path, value, level, flags, className, validator);
  return GetFloat(path);
}

int32_t LcUOption::DefineInt32AndGet(const char* path, int32_t value, int32_t level, uint32_t flags,
                                     const char* className, LcUOptionValidator* validator) {
  LcUOptionLock lock;
  DefineInt32(path, value, level, flags, className, validator);
  return GetInt32(path);
}
