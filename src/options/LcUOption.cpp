#include "options/LcUOption.h"

#include "environment/LcURegistry.h"
#include "environment/LcUResource.h"
#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcURecursiveCriticalSection.h"
#include "foundation/LcUSysError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOptionLock.h"
#include "serial/LcUName.h"

LcUComponent LcUOption::component;

namespace {
LcUExOptionSet* present = nullptr;
LcUExOptionSet* defaults = nullptr;
LcUOptionSet* saved = nullptr;

// Made on first use, so that a lock taken before the component starts, or
// by a component stopping after it, still finds a lock.
LcURecursiveCriticalSection& Section() {
  static LcURecursiveCriticalSection section;
  return section;
}

LcUExOptionSet* NewRoot() {
  LcUExOptionSet* root = new LcUExOptionSet;
  if (root) root->AddRef();
  return root;
}

template <typename Set>
void ReleaseRoot(Set*& root) {
  if (root) root->Release();
  root = nullptr;
}

void RelocaliseSet(LcUOptionSet* set) {
  if (!set) return;
  for (int32_t i = 0; i < set->GetCount(); ++i) {
    LcUData value;
    if (LcUOptionSet* child = set->GetValue(i, &value))
      RelocaliseSet(child);
    else if (LcUName* name = value.GetName())
      name->Relocalise();
  }
}
}  // namespace

bool LcUOption::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUOption") != 1) return true;
  LcUMemory::Initialize();
  LcURegistry::Initialize();
  LcUResource::Initialize();
  LcUOptionLock lock;
  present = NewRoot();
  defaults = NewRoot();
  return present && defaults;
}

void LcUOption::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  {
    LcUOptionLock lock;
    ReleaseRoot(saved);
    ReleaseRoot(present);
    ReleaseRoot(defaults);
  }
  LcUResource::Terminate();
  LcURegistry::Terminate();
  LcUMemory::Terminate();
}

void LcUOption::Lock() {
  Section().Lock();
}

void LcUOption::Unlock() {
  Section().Unlock();
}

LcUExOptionSet* LcUOption::GetPresentRoot() {
  return present;
}

LcUExOptionSet* LcUOption::GetDefaultRoot() {
  return defaults;
}

LcUOptionSet* LcUOption::GetSavedRoot() {
  return saved;
}

LcUOptionSet* LcUOption::GetSet(const char* path) {
  LcUOptionLock lock;
  return GetSet(present, path);
}

LcUOptionSet* LcUOption::GetSet(LcUOptionSet* set, const char* path) {
  if (!path || !*path) return set;
  int32_t i = -1;
  LcUOptionSet* holder = FindOption(set, path, i);
  return i >= 0 ? holder->GetValue(i, nullptr) : nullptr;
}

bool LcUOption::HasDefaults(const char* path) {
  LcUOptionLock lock;
  int32_t i = -1;
  FindOption(defaults, path, i);
  return i >= 0;
}

bool LcUOption::SetSetClass(const char* path, const char* className) {
  LcUOptionLock lock;
  LcUExOptionSet* set = dynamic_cast<LcUExOptionSet*>(GetSet(present, path));
  if (!set) return false;
  set->className = className;
  return true;
}

bool LcUOption::SetPathFlags(const char* path, uint32_t flags) {
  LcUOptionLock lock;
  // Placing a name below the path makes every component of it a set.
  LcUStringA below(path ? path : "");
  below.Append(".X");
  LcUStringA name;
  LcUExOptionSet* set = FindParentForNewOption(present, below.Get(), name);
  if (!set || !FindParentForNewOption(defaults, below.Get(), name)) {
    LcUError::PostF(LcUError::eERROR, &component, "Path to set malformed: %s", path ? path : "");
    return false;
  }
  set->setFlags |= flags;
  return true;
}

void LcUOption::Relocalise() {
  LcUOptionLock lock;
  RelocaliseSet(present);
  RelocaliseSet(defaults);
  RelocaliseSet(saved);
}

void LcUOption::SetSavedOptions(LcUOptionSet* set) {
  LcUOptionLock lock;
  if (set) set->AddRef();
  if (saved) saved->Release();
  saved = set;
  if (!set || !present) return;
  int32_t status = MergeSet(present, set, eMERGE_DEFAULT_IF_SOURCE | eMERGE_COPY_MARK, false);
  if (status) LcUError::PostF(LcUError::eWARNING, &component, "Failed to set saved values, error %d", int(status));
  LcUExOptionSet* marked = new LcUExOptionSet(set->GetFlags());
  if (!marked) return;
  marked->AddRef();
  for (int32_t i = 0; i < set->GetCount(); ++i)
    if (set->GetState(i) & LcUOptionSet::eDEFAULT) marked->AddRecord(LcUOptionRecord::CopyOf(set, i));
  status = MergeSet(defaults, marked, eMERGE_COPY_MARK, false);
  if (status)
    LcUError::PostF(LcUError::eWARNING, &component, "Failed to set saved default values, error %d", int(status));
  marked->Release();
}
