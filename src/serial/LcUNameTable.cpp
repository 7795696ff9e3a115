#include "serial/LcUNameTable.h"

LcUNameTable::LcUNameTable() : scratch(new LcUName(static_cast<const char16_t*>(nullptr))) {}

LcUNameTable::LcUNameTable(const LcUNameTable& other)
    : scratch(new LcUName(static_cast<const char16_t*>(nullptr))), names(other.names) {
  for (LcUName* name : names) name->AddRef();
}

LcUNameTable::~LcUNameTable() {
  Clear();
  if (scratch) scratch->Release();
}

void LcUNameTable::Release() {
  if (refCount < 2)
    delete this;
  else
    --refCount;
}

LcUName* LcUNameTable::Intern(const char16_t* user, const char* internal) {
  if (!scratch) return nullptr;
  // The same resolution as a new name: the resources' text, else the
  // caller's, else the key widened.
  scratch->Resolve(internal, user);
  auto found = names.find(scratch);
  if (found != names.end()) return *found;
  LcUName* name = new LcUName(internal, user);
  if (name) names.insert(name);
  return name;
}

LcUName* LcUNameTable::MakeName(const char16_t* user, const char* internal, LcUNameTable* table) {
  return table ? table->Intern(user, internal) : new LcUName(internal, user);
}

void LcUNameTable::Remove(LcUName* name) {
  auto found = names.find(name);
  if (found == names.end() || *found != name) return;
  names.erase(found);
  name->Release();
}

void LcUNameTable::Clear() {
  for (LcUName* name : names) name->Release();
  names.clear();
}
