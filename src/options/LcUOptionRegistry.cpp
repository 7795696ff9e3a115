#include <cstdio>
#include <cstdlib>

#include "environment/LcURegistry.h"
#include "foundation/LcUError.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"

namespace {
constexpr uint32_t kListFlags = LcURegistry::eREG_USER | LcURegistry::eREG_INHERIT | LcURegistry::eREG_QUIET;
constexpr uint32_t kValueFlags = LcURegistry::eREG_USER | LcURegistry::eREG_INHERIT | LcURegistry::eREG_WRITE_BACK;
// Keys nest no deeper than this; deeper ones are left unread.
constexpr int32_t kMaxDepth = 64;
constexpr int32_t kMaxIndex = 99999;

// The places of an array being read, kept sparse: a name's index may lie
// far beyond the elements there are.
class ArrayPlaces {
public:
  ~ArrayPlaces() {
    for (int32_t k = 0; k < slots.Size(); ++k) delete slots[k].record;
  }
  // At `index`, the array growing to it when needed; appended when that
  // place is taken.
  void Put(int32_t index, LcUOptionRecord* record) {
    int32_t k = Lower(index);
    if (k < slots.Size() && slots[k].index == index) {
      index = end;
      k = slots.Size();
    }
    if (!slots.Insert(k, Slot{index, record})) {
      delete record;
      return;
    }
    if (index >= end) end = index + 1;
  }
  // Into `set` in index order, the free places left out.
  void MoveInto(LcUExOptionSet* set) {
    for (int32_t k = 0; k < slots.Size(); ++k) set->AddRecord(slots[k].record);
    slots.Clear();
  }

private:
  struct Slot {
    int32_t index;
    LcUOptionRecord* record;
  };
  int32_t Lower(int32_t index) const {
    int32_t low = 0;
    int32_t high = slots.Size();
    while (low < high) {
      int32_t middle = (low + high) / 2;
      if (slots[middle].index < index)
        low = middle + 1;
      else
        high = middle;
    }
    return low;
  }
  LcUVector<Slot> slots;
  int32_t end = 0;
};

// 0 to 99999 in decimal, or -1.
int32_t ParseIndex(const char* name) {
  if (!name || !*name) return -1;
  int32_t value = 0;
  for (const char* c = name; *c; ++c) {
    if (*c < '0' || *c > '9' || value > kMaxIndex) return -1;
    value = value * 10 + (*c - '0');
  }
  return value <= kMaxIndex ? value : -1;
}

LcUOptionRecord* NewRecord(const LcUStringA& name) {
  LcUOptionRecord* record = new LcUOptionRecord;
  if (record) record->name = name;
  return record;
}

// Plain sets take the name as it stands; arrays by index.
void AddByName(LcUExOptionSet* set, ArrayPlaces* places, LcUOptionRecord* record) {
  if (!places) {
    set->AddRecord(record);
    return;
  }
  int32_t index = ParseIndex(record->name.Get());
  if (index < 0) {
    LcUError::LogF("%s%s\n", "LcUOption: Ignoring bad option name in registry: ", record->name.Get());
    delete record;
    return;
  }
  places->Put(index, record);
}

bool FirstIsEmpty(LcUOptionSet* set) {
  LcUData value;
  return set->GetCount() > 0 && !set->GetValue(0, &value) && value.IsEmpty();
}

LcUExOptionSet* ReadKey(const char16_t* key, uint32_t mode, int32_t depth) {
  LcUExOptionSet* set = new LcUExOptionSet;
  if (!set) return nullptr;
  bool isArray = LcURegistry::RegGetI32(key, nullptr, 0, kListFlags) == 1;
  // An array comes whole from one location, never mixed.
  uint32_t where = isArray ? uint32_t(LcURegistry::eLIST_FIRST_LOCATION) : 0u;
  ArrayPlaces arrayPlaces;
  ArrayPlaces* places = isArray ? &arrayPlaces : nullptr;
  LcUString wide;
  LcUStringA name;
  LcUString path;

  LcURegistryNameList* keys =
      depth < kMaxDepth ? LcURegistry::ListNames(key, kListFlags, LcURegistry::eLIST_SUB_KEYS | where) : nullptr;
  for (; keys && keys->IsValid(); keys->Next()) {
    keys->GetName(wide);
    LcUString::UTF16ToUTF8(wide.Get(), name, true);
    LcURegistry::MakeKeyPath(key, wide.Get(), path);
    LcUExOptionSet* child = ReadKey(path.Get(), 1, depth + 1);
    if (!child) continue;
    // An emptied user array is dropped below the top.
    if ((mode & 1) && child->IsArray() && FirstIsEmpty(child)) {
      delete child;
      continue;
    }
    LcUOptionRecord* record = NewRecord(name);
    if (!record) {
      delete child;
      continue;
    }
    record->SetChild(child);
    AddByName(set, places, record);
  }
  LcURegistry::FreeNameList(keys);

  bool sawEmpty = false;
  LcUData empty;
  LcURegistryNameList* values = LcURegistry::ListNames(key, kListFlags, LcURegistry::eLIST_VALUES | where);
  for (; values && values->IsValid(); values->Next()) {
    values->GetName(wide);
    LcUData value;
    value.FromRegistry(key, wide.Get(), &empty, kValueFlags);
    if (value.IsEmpty() && (mode & 1)) {
      sawEmpty = true;
      continue;
    }
    LcUString::UTF16ToUTF8(wide.Get(), name, true);
    LcUOptionRecord* record = NewRecord(name);
    if (!record) continue;
    record->value = static_cast<LcUData&&>(value);
    AddByName(set, places, record);
  }
  LcURegistry::FreeNameList(values);

  if (places) {
    places->MoveInto(set);
    // An array the user emptied survives as one empty element.
    if (sawEmpty && set->GetCount() == 0) set->AddRecord(NewRecord(LcUStringA("0")));
    set->setFlags |= LcUOptionSet::eARRAY;
  }
  return set;
}

// Ready to take a set's values: an array's stale elements are gone first.
bool PrepareKey(const char16_t* key, bool isArray) {
  if (isArray) {
    LcUString full;
    LcURegistry::MakeKeyPath(LcURegistry::GetRootKey(), key, full);
    LcURegistry::DeleteUserKey(full.Get());
  }
  bool created = LcURegistry::CreateUserKey(key);
  return LcURegistry::RegSetI32(key, nullptr, isArray ? 1 : 0, kListFlags) && created;
}
}  // namespace

LcUExOptionSet* LcUOption::ReadFromRegistry(const char16_t* key, uint32_t mode) {
  return ReadKey(key, mode, 0);
}

bool LcUOption::WriteKeys(LcUOptionSet* set, const char16_t* key, uint32_t mode) {
  bool isArray = set->IsArray();
  bool written = PrepareKey(key, isArray);
  LcUString name;
  LcUString path;
  char digits[16];
  for (int32_t i = 0; i < set->GetCount(); ++i) {
    const char* narrow = set->GetName(i);
    if (isArray || !narrow) {
      std::snprintf(digits, sizeof digits, "%d", int(i));
      narrow = digits;
    }
    LcUString::UTF8ToUTF16(narrow, -1, name);
    bool isDefault = mode != 0 && (set->GetState(i) & LcUOptionSet::eDEFAULT);
    LcUData value;
    LcUOptionSet* child = set->GetValue(i, &value);
    if (!child) {
      if (isDefault && (mode & eLEAVE_OUT_DEFAULTS)) continue;
      // A deletion marker: the saved value vanishes on the next read.
      if (isDefault && (mode & eWRITE_DEFAULTS_AS_DELETIONS)) value.Clear();
      written = value.ToRegistry(key, name.Get(), kValueFlags) && written;
      continue;
    }
    if (child->GetFlags() & LcUOptionSet::eTRANSIENT) continue;
    LcURegistry::MakeKeyPath(key, name.Get(), path);
    if (isDefault && child->IsArray()) {
      if (!(mode & eWRITE_DEFAULTS_AS_DELETIONS)) continue;
      // The emptied-array marker.
      written = PrepareKey(path.Get(), true) && LcUData().ToRegistry(path.Get(), u"0", kValueFlags) && written;
      continue;
    }
    written = WriteKeys(child, path.Get(), eWRITE_DEFAULTS_AS_DELETIONS) && written;
  }
  return written;
}

bool LcUOption::WriteToRegistry(LcUOptionSet* set, const char16_t* key, uint32_t mode) {
  LcUStringA dotted;
  set->GetPath(dotted);
  if (dotted.IsEmpty()) return WriteKeys(set, key, mode);
  dotted.Replace(".", "\\", 0, true);
  LcUString below;
  LcUString::UTF8ToUTF16(dotted.Get(), -1, below);
  LcUString path;
  LcURegistry::MakeKeyPath(key, below.Get(), path);
  return WriteKeys(set, path.Get(), mode);
}
