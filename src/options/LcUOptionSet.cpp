#include "options/LcUOptionSet.h"

#include <cstring>

#include "environment/LcUResource.h"
#include "serial/LcUData.h"
#include "serial/LcUName.h"

bool LcUOptionSet::IsAtomicChild(int32_t i) {
  return (GetDefineFlags(i) & eATOMIC) != 0;
}

bool LcUOptionSet::HasVisibleOptions(int32_t level) {
  if (IsArray()) return true;
  for (int32_t i = 0; i < GetCount(); ++i)
    if ((!GetValue(i, nullptr) || IsAtomicChild(i)) && GetLevel(i) <= level) return true;
  return (GetFlags() & eALWAYS_VISIBLE) != 0;
}

bool LcUOptionSet::HasVisibleChildren(int32_t level) {
  if (IsArray()) return false;
  for (int32_t i = 0; i < GetCount(); ++i) {
    LcUOptionSet* child = GetValue(i, nullptr);
    if (child && !IsAtomicChild(i) && (child->HasVisibleOptions(level) || child->HasVisibleChildren(level)))
      return true;
  }
  return false;
}

const char16_t* LcUOptionSet::GetUserName(int32_t i) {
  LcUStringA key;
  if (GetDefineFlags(i) & ePLAIN_TEXT_KEY) {
    key = "lcuopt:";
  } else {
    key = "lcuopt.";
    GetPath(key);
    if (parent) key.Append('.');
  }
  key.Append(GetName(i));
  return LcUResource::FindString(key.Get(), nullptr);
}

int32_t LcUOptionSet::GetEnumValues(int32_t i, LcUVector<LcUName*>& list) {
  LcUData value;
  if (GetValue(i, &value) || value.GetTag() != LcUData::eNAME || !value.GetName()) return 0;
  LcUName* name = value.GetName();
  int32_t first = 0;
  LcUStringA base;
  if (!LcUName::ParseIndexedName(name->GetInternalName(), first, base)) {
    if (!list.Add(name)) return 0;
    name->AddRef();
    return 1;
  }
  int32_t count = 0;
  LcUStringA key;
  for (int32_t n = first; n >= 0; ++n) {
    LcUName::FormatIndexedName(base.Get(), n, key);
    if (!LcUResource::FindString(key.Get(), nullptr)) break;
    LcUName* choice = LcUName::MakeIndexedName(base.Get(), n);
    if (!choice) break;
    if (!list.Add(choice)) {
      choice->Release();
      break;
    }
    ++count;
  }
  return count;
}

LcUOptionSet* LcUOptionSet::GetDefaultSet() {
  return nullptr;
}

const char* LcUOptionSet::GetSetClass() {
  return nullptr;
}

bool LcUOptionSet::Insert(int32_t) {
  return false;
}

bool LcUOptionSet::Remove(int32_t) {
  return false;
}

void LcUOptionSet::GetPath(LcUStringA& out) const {
  if (!parent) return;
  int32_t start = out.Length();
  parent->GetPath(out);
  if (out.Length() > start) out.Append('.');
  out.Append(name);
}

void LcUOptionSet::NoteChange() {
  OnChange();
  for (LcUOptionSet* set = this; set; set = set->parent) {
    ++set->changeCount;
    LcUOptionSet* up = set->parent;
    if (!up || !set->IsArray()) continue;
    for (int32_t i = 0; i < up->GetCount(); ++i)
      if (up->GetValue(i, nullptr) == set) up->SetState(i, up->GetState(i) & ~uint32_t(eDEFAULT));
  }
}

int32_t LcUOptionSet::Find(const char* key, int32_t length) {
  int32_t count = GetCount();
  for (int32_t i = 0; i < count; ++i) {
    const char* candidate = GetName(i);
    if (candidate && std::strncmp(candidate, key, size_t(length)) == 0 && candidate[length] == 0) return i;
  }
  return -1;
}

int32_t LcUOptionSet::Find(const char* key) {
  return Find(key, int32_t(std::strlen(key)));
}
