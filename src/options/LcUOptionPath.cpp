#include <cstring>

#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"

namespace {
// Follows `path` down the sets. On a match, the holding set and `index`;
// otherwise the deepest set reached, index -1, and in `rest` the offset of
// the part of the path below it.
LcUOptionSet* Walk(LcUOptionSet* set, const char* path, int32_t& index, int32_t& rest) {
  index = -1;
  rest = 0;
  if (!set || !path) return set;
  const char* part = path;
  for (;;) {
    const char* dot = std::strchr(part, '.');
    if (!dot) {
      if (*part) index = set->Find(part, int32_t(std::strlen(part)));
      break;
    }
    if (dot == part) break;
    int32_t i = set->Find(part, int32_t(dot - part));
    LcUOptionSet* child = i >= 0 ? set->GetValue(i, nullptr) : nullptr;
    if (!child) break;
    set = child;
    part = dot + 1;
  }
  rest = int32_t(part - path);
  return set;
}

// Every component present: no leading, doubled or trailing dot.
bool WellFormed(const char* path) {
  if (!*path) return false;
  for (const char* c = path; *c; ++c)
    if (*c == '.' && (c == path || c[1] == '.' || c[1] == 0)) return false;
  return true;
}
}  // namespace

LcUOptionSet* LcUOption::FindOption(LcUOptionSet* set, const char* path, int32_t& index) {
  int32_t rest = 0;
  return Walk(set, path, index, rest);
}

LcUExOptionSet* LcUOption::FindParentForNewOption(LcUOptionSet* root, const char* path, LcUStringA& nameOut) {
  int32_t index = -1;
  int32_t rest = 0;
  LcUExOptionSet* set = dynamic_cast<LcUExOptionSet*>(Walk(root, path, index, rest));
  if (!set || index >= 0) return nullptr;
  const char* part = path + rest;
  if (!WellFormed(part)) return nullptr;
  for (const char* dot; (dot = std::strchr(part, '.')) != nullptr; part = dot + 1) {
    // The walk stopped here because the name is free, or taken by a leaf.
    if (set->Find(part, int32_t(dot - part)) >= 0) return nullptr;
    uint32_t inherited = (set->setFlags & LcUOptionSet::eINHERIT_COMPOUND) ? set->setFlags & LcUOptionSet::eCOMPOUND : 0;
    LcUExOptionSet* child = new LcUExOptionSet(inherited);
    LcUOptionRecord* record = child ? new LcUOptionRecord : nullptr;
    if (!record) {
      delete child;
      return nullptr;
    }
    record->name.Assign(part, int32_t(dot - part));
    record->state = LcUOptionSet::eDEFAULT;
    record->SetChild(child);
    if (!set->Append(record)) return nullptr;
    set = child;
  }
  nameOut = part;
  return set;
}

void LcUOption::SplitPath(const char* path, LcUStringA& lastOut, LcUStringA& parentOut) {
  const char* dot = path ? std::strrchr(path, '.') : nullptr;
  if (!dot) {
    lastOut = path ? path : "";
    parentOut = "";
    return;
  }
  lastOut = dot + 1;
  parentOut.Assign(path, int32_t(dot - path));
}
