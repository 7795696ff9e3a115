#include "foundation/LcUSysError.h"

#include <cstring>

#include "foundation/LcUSysErrorState.h"

// Named from the start: reports made before it is up still say whose.
LcUComponent LcUSysError::component = {"LcUSysError", 0, nullptr, nullptr, nullptr, {}, nullptr};
LcUSysErrorState sysErrorState;

namespace {
void Echo(const char* prefix, const char* name) {
  LcUSysError::Log(prefix);
  LcUSysError::Log(name);
}

void ClearHandlers(LcUComponent* record) {
  record->anyHandler = nullptr;
  for (LcUErrorHandler& handler : record->severityHandlers) handler = nullptr;
  while (LcUErrorIdHandler* node = record->idHandlers) {
    record->idHandlers = node->next;
    delete node;
  }
}

// Tolerates records whose chain was emptied under them at shutdown.
void Unlink(LcUComponent* record) {
  LcUSysErrorState& s = sysErrorState;
  if (record->previous)
    record->previous->next = record->next;
  else if (s.first == record)
    s.first = record->next;
  if (record->next)
    record->next->previous = record->previous;
  else if (s.last == record)
    s.last = record->previous;
  record->next = nullptr;
  record->previous = nullptr;
}

bool NameTaken(const char* name) {
  for (LcUComponent* c = sysErrorState.first; c; c = c->next)
    if (c->name && name && std::strcmp(c->name, name) == 0) return true;
  return false;
}
}  // namespace

int LcUSysError::RegisterComponent(LcUComponent* record, const char* name) {
  if (!record) return 0;
  if (record->initCount != 0) {
    ++record->initCount;
    return 0;
  }
  LcUSysErrorState& s = sysErrorState;
  // The duplicate report may start components of its own; they skip this.
  if (!s.registering) {
    s.registering = true;
    if (s.console) Echo("Init: ", name);
    if (NameTaken(name)) Note(0, &component, -1, nullptr, u"Component with name already registered.");
    s.registering = false;
  }
  record->name = name;
  record->next = nullptr;
  record->previous = s.last;
  if (s.last)
    s.last->next = record;
  else
    s.first = record;
  s.last = record;
  record->initCount = 1;
  return 1;
}

int LcUSysError::UnregisterComponent(LcUComponent* record) {
  if (!record || record->initCount == 0) return 0;
  if (--record->initCount != 0) return 0;
  if (sysErrorState.console) Echo("Term: ", record->name);
  ClearHandlers(record);
  Unlink(record);
  return 1;
}

int LcUSysError::InitSysError() {
  if (!RegisterComponent(&component, "LcUSysError")) return 0;
  sysErrorState.lockReady = true;
  return 1;
}

int LcUSysError::TermSysError() {
  if (!UnregisterComponent(&component)) return 0;
  LcUSysErrorState& s = sysErrorState;
  // Leftovers are reported, not terminated: their owners may still run.
  for (LcUComponent* c = s.first; c;) {
    LcUComponent* next = c->next;
    Log("*** Component ");
    Log(c->name);
    Log("still initialised\n");
    ClearHandlers(c);
    c->next = nullptr;
    c->previous = nullptr;
    c = next;
  }
  s.first = nullptr;
  s.last = nullptr;
  s.lockReady = false;
  return 1;
}
