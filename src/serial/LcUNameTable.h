#pragma once
#include <cstdint>
#include <unordered_set>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUDeletable.h"
#include "serial/LcUName.h"

// A set of shared names: equal names are one object. The table's own count
// on each entry is what keeps it alive; a copy holds counts on all of them.
class LcUNameTable : public LcUDeletable {
public:
  LcUNameTable();
  LcUNameTable(const LcUNameTable& other);
  ~LcUNameTable() override;
  LcUNameTable& operator=(const LcUNameTable&) = delete;

  void AddRef() { ++refCount; }
  void Release();

  // The shared name; the user text resolves as a new name's would. Null
  // only when memory ran out.
  LcUName* Intern(const char16_t* user, const char* internal);
  // Without a table a new name the caller owns, otherwise the shared one.
  static LcUName* MakeName(const char16_t* user, const char* internal, LcUNameTable* table);
  void Remove(LcUName* name);
  void Clear();
  uint32_t GetCount() const { return uint32_t(names.size()); }

private:
  struct NameHash {
    size_t operator()(const LcUName* name) const { return name->Hash(); }
  };
  struct NameEqual {
    bool operator()(const LcUName* a, const LcUName* b) const { return LcUName::Equal(a, b); }
  };

  int32_t refCount = 1;
  // Look-ups go through it, so that a hit costs no allocation.
  LcUName* scratch;
  std::unordered_set<LcUName*, NameHash, NameEqual, LcUAllocator<LcUName*>> names;
};
