#include <cstring>

#include "foundation/LcUError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "options/LcUOptionLock.h"

namespace {
constexpr uint32_t kDefault = LcUOptionSet::eDEFAULT;
constexpr uint32_t kMarked = LcUOptionSet::eMARKED;

// The target's state after a merge, from the state both had before.
uint32_t MergedState(uint32_t target, uint32_t source, uint32_t mode, bool differ) {
  if (mode & LcUOption::eMERGE_DEFAULT_IF_SOURCE) {
    if (source & kDefault)
      target |= kDefault;
    else if (differ)
      target &= ~kDefault;
  }
  if (mode & LcUOption::eMERGE_COPY_DEFAULT) target = (target & ~kDefault) | (source & kDefault);
  if (mode & LcUOption::eMERGE_COPY_MARK) target = (target & ~kMarked) | (source & kMarked);
  return target;
}

int32_t MergeArrays(LcUOptionSet* dest, LcUOptionSet* src, bool restructure) {
  int32_t status = 0;
  while (dest->GetCount() > src->GetCount())
    if (!dest->Remove(dest->GetCount() - 1)) {
      status |= LcUOption::eCANNOT_SHRINK;
      break;
    }
  while (dest->GetCount() < src->GetCount())
    if (!dest->Insert(dest->GetCount())) {
      status |= LcUOption::eCANNOT_GROW;
      break;
    }
  int32_t count = dest->GetCount() < src->GetCount() ? dest->GetCount() : src->GetCount();
  for (int32_t k = 0; k < count; ++k)
    status |= LcUOption::MergeOption(dest, k, src, k, LcUOption::eMERGE_COPY_DEFAULT | LcUOption::eMERGE_COPY_MARK,
                                     restructure);
  return status;
}

// The leaf's value without a copy where the set is the concrete one; null
// for a branch.
const LcUData* PeekValue(LcUOptionSet* set, int32_t i, LcUData& scratch) {
  if (LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(set)) {
    const LcUOptionRecord* record = concrete->GetRecord(i);
    return record->childSet ? nullptr : &record->value;
  }
  return set->GetValue(i, &scratch) ? nullptr : &scratch;
}

// SetOption, telling whether the value differed.
bool Assign(LcUOptionSet* set, int32_t i, const LcUData& value, LcUString* errorOut, bool& differed) {
  LcUData scratch;
  const LcUData* current = PeekValue(set, i, scratch);
  differed = false;
  if (!current || current->GetTag() != value.GetTag()) {
    if (errorOut) errorOut->Clear();
    return false;
  }
  if (LcUData::Equal(*current, value)) return true;
  differed = true;
  if (!set->SetValue(i, value, errorOut)) return false;
  set->SetState(i, set->GetState(i) & ~kDefault);
  set->NoteChange();
  return true;
}

bool Passes(LcUOptionSet* set, int32_t i, uint32_t filter) {
  uint32_t state = set->GetState(i);
  bool branch = set->GetValue(i, nullptr) != nullptr;
  bool atomic = branch && set->IsAtomicChild(i);
  bool plain = branch && !atomic;
  const struct {
    uint32_t bit;
    bool keep;
  } rules[] = {{LcUOption::eONLY_DEFAULT, (state & kDefault) != 0},
               {LcUOption::eONLY_CHANGED, (state & kDefault) == 0},
               {LcUOption::eONLY_MARKED, (state & kMarked) != 0},
               {LcUOption::eONLY_UNMARKED, (state & kMarked) == 0},
               {LcUOption::eONLY_PLAIN_SETS, plain},
               {LcUOption::eNO_PLAIN_SETS, !plain},
               {LcUOption::eONLY_ATOMIC_SETS, atomic},
               {LcUOption::eNO_ATOMIC_SETS, !atomic},
               {LcUOption::eNO_SETS, !branch},
               {LcUOption::eONLY_SETS, branch}};
  for (const auto& rule : rules)
    if ((filter & rule.bit) && !rule.keep) return false;
  return true;
}
}  // namespace

bool LcUOption::SetOption(LcUOptionSet* set, int32_t i, const LcUData& value, LcUString* errorOut) {
  bool differed = false;
  return Assign(set, i, value, errorOut, differed);
}

int32_t LcUOption::MergeOption(LcUOptionSet* dest, int32_t i, LcUOptionSet* src, int32_t j, uint32_t mode,
                               bool restructure) {
  uint32_t target = dest->GetState(i);
  uint32_t source = src->GetState(j);
  if ((mode & eMERGE_SKIP_MARKED_TARGET) && (target & kMarked)) return 0;
  if ((mode & eMERGE_SKIP_UNMARKED_SOURCE) && !(source & kMarked)) return 0;
  LcUOptionSet* destChild = dest->GetValue(i, nullptr);
  LcUOptionSet* srcChild = src->GetValue(j, nullptr);
  if (!destChild && !srcChild) {
    LcUData scratch;
    bool differed = false;
    if (!Assign(dest, i, *PeekValue(src, j, scratch), nullptr, differed)) return eREFUSED;
    // Assigning took the default bit; the modes decide it.
    dest->SetState(i, MergedState(target, source, mode, differed));
    return 0;
  }
  if (destChild && srcChild && !destChild->IsArray() && !srcChild->IsArray())
    return MergeSet(destChild, srcChild, mode, restructure);
  if (destChild && srcChild && destChild->IsArray() && srcChild->IsArray()) {
    uint32_t state = MergedState(target, source, mode, !Equal(destChild, srcChild));
    int32_t status = MergeArrays(destChild, srcChild, restructure);
    // Resizing and assigning noted changes that cleared the array's default bit.
    dest->SetState(i, state);
    return status;
  }
  if (!restructure) return eSTRUCTURE;
  LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(dest);
  LcUOptionRecord* copy = concrete ? LcUOptionRecord::CopyOf(src, j) : nullptr;
  if (!copy) return eCANNOT_REPLACE;
  concrete->ReplaceRecord(i, copy);
  return 0;
}

int32_t LcUOption::MergeSet(LcUOptionSet* dest, LcUOptionSet* src, uint32_t mode, bool restructure) {
  int32_t status = 0;
  int32_t last = -1;
  for (int32_t j = 0; j < src->GetCount(); ++j) {
    const char* name = src->GetName(j);
    // Trees in step hold the name at the same place.
    bool inStep = name && j < dest->GetCount() && dest->GetName(j) && std::strcmp(dest->GetName(j), name) == 0;
    int32_t i = inStep ? j : name ? dest->Find(name) : -1;
    if (i >= 0) {
      status |= MergeOption(dest, i, src, j, mode, restructure);
      last = i;
      continue;
    }
    if (!restructure) continue;
    LcUExOptionSet* concrete = dynamic_cast<LcUExOptionSet*>(dest);
    if (!concrete || !concrete->InsertRecord(last + 1, LcUOptionRecord::CopyOf(src, j))) {
      status |= eCANNOT_ADD;
      continue;
    }
    ++last;
  }
  return status;
}

bool LcUOption::Equal(LcUOptionSet* a, LcUOptionSet* b) {
  if (!a || !b) return a == b;
  if (a->GetCount() != b->GetCount()) return false;
  for (int32_t i = 0; i < a->GetCount(); ++i) {
    LcUData valueA;
    LcUData valueB;
    LcUOptionSet* childA = a->GetValue(i, &valueA);
    LcUOptionSet* childB = b->GetValue(i, &valueB);
    if (childA || childB) {
      if (!childA || !childB || !Equal(childA, childB)) return false;
    } else if (!LcUData::Equal(valueA, valueB)) {
      return false;
    }
  }
  return true;
}

LcUExOptionSet* LcUOption::CopyFiltered(LcUOptionSet* set, uint32_t filter) {
  LcUExOptionSet* copy = set ? new LcUExOptionSet(set->GetFlags()) : nullptr;
  if (!copy) return nullptr;
  copy->className = set->GetSetClass();
  for (int32_t i = 0; i < set->GetCount(); ++i)
    if (Passes(set, i, filter) && !copy->AddRecord(LcUOptionRecord::CopyOf(set, i))) {
      delete copy;
      return nullptr;
    }
  return copy;
}

void LcUOption::ResetToDefaults(const char* path) {
  LcUOptionLock lock;
  int32_t i = -1;
  int32_t j = -1;
  LcUOptionSet* live = FindOption(GetPresentRoot(), path, i);
  LcUOptionSet* initial = FindOption(GetDefaultRoot(), path, j);
  if (i < 0 || j < 0) {
    LcUError::LogF("%s%s%s", "LcUOption::ResetToDefaults(", path ? path : "",
                   ") - no default set, should have been guarded with LcUOption::HasDefaults\n");
    return;
  }
  int32_t status = MergeOption(live, i, initial, j, eMERGE_COPY_DEFAULT | eMERGE_COPY_MARK, false);
  if (!status) return;
  // The text has always carried its format mark unfilled.
  LcUError::LogF("%s%s%s", "LcUOption::ResetToDefaults(", path ? path : "", ") failed with status %d");
  LcUError::LogInt(status);
  LcUError::LogF("\n");
}
