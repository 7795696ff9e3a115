#include <cstdlib>
#include <new>

#include "foundation/LcUSysError.h"
#include "foundation/LcUSysErrorPlatform.h"
#include "foundation/LcUSysErrorState.h"

namespace {
constexpr int eALL = -1;
constexpr int eNONE = 5;

// The table slot for a severity (or eALL) of a component, or the global one.
LcUErrorHandler* Slot(int severity, LcUComponent* component) {
  LcUSysErrorState& s = sysErrorState;
  if (severity == eALL) return component ? &component->anyHandler : &s.anyHandler;
  if (severity < 0 || severity > eNONE) return nullptr;
  return component ? &component->severityHandlers[severity] : &s.severityHandlers[severity];
}

LcUErrorIdHandler** FindIdNode(LcUComponent* component, int32_t id) {
  for (LcUErrorIdHandler** node = &component->idHandlers; *node; node = &(*node)->next)
    if ((*node)->id == id) return node;
  return nullptr;
}

LcUErrorHandler At(LcUErrorHandler* slot) {
  return slot ? *slot : nullptr;
}

LcUErrorHandler AnyOf(LcUComponent* component) {
  return component && component->anyHandler ? component->anyHandler : sysErrorState.anyHandler;
}

LcUErrorHandler Exact(int severity, LcUComponent* component, int32_t id) {
  if (severity == eALL) return AnyOf(component);
  if (!component || id == -1) return At(Slot(severity, component));
  LcUErrorIdHandler** node = FindIdNode(component, id);
  return node ? (*node)->handler : nullptr;
}

// Needs no conversion, so it works while strings are down.
void LogRaw(LcUComponent* component, const char16_t* message) {
  char text[2000];
  LcUSysError::ToAscii(message, text, sizeof(text));
  LcUSysError::Log("LcUSysError::PostFixed: ");
  if (component) {
    LcUSysError::Log(component->name ? component->name : "");
    LcUSysError::Log(": ");
  }
  LcUSysError::Log("\"");
  LcUSysError::Log(text);
  LcUSysError::Log("\"\n");
}
}  // namespace

bool LcUSysError::SetHandler(int severity, LcUComponent* component, int32_t id, LcUErrorHandler handler) {
  if (id != -1) {
    if (!component) return false;
    if (LcUErrorIdHandler** node = FindIdNode(component, id)) {
      (*node)->handler = handler;
      return true;
    }
    LcUErrorIdHandler* node = new (std::nothrow) LcUErrorIdHandler{component->idHandlers, id, handler};
    if (!node) return false;
    component->idHandlers = node;
    return true;
  }
  LcUErrorHandler* slot = Slot(severity, component);
  if (!slot) return false;
  *slot = handler;
  return true;
}

LcUErrorHandler LcUSysError::GetHandler(int severity, LcUComponent* component, int32_t id) {
  if (id == -1) return At(Slot(severity, component));
  LcUErrorIdHandler** node = component ? FindIdNode(component, id) : nullptr;
  return node ? (*node)->handler : nullptr;
}

void LcUSysError::RemoveHandler(int severity, LcUComponent* component, int32_t id) {
  if (id == -1) {
    if (LcUErrorHandler* slot = Slot(severity, component)) *slot = nullptr;
    return;
  }
  LcUErrorIdHandler** node = component ? FindIdNode(component, id) : nullptr;
  if (!node) return;
  LcUErrorIdHandler* gone = *node;
  *node = gone->next;
  delete gone;
}

void LcUSysError::SetPreHandler(LcUErrorHandler handler) {
  sysErrorState.preHandler = handler;
}

LcUErrorHandler LcUSysError::GetPreHandler() {
  return sysErrorState.preHandler;
}

int LcUSysError::Post(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
  int startLevel = 0;
  if (severity == 4) startLevel = id == -1 && !data ? 4 : 5;
  return PostFixed(severity, component, id, data, startLevel, message);
}

void LcUSysError::Note(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
  if (LcUErrorHandler pre = sysErrorState.preHandler)
    pre(severity, component, id, data, message);
  else
    LogRaw(component, message);
}

// Handlers are read as they stand at each step: a handler may change them.
int LcUSysError::PostFixed(int severity, LcUComponent* component, int32_t id, void* data, int startLevel,
                           const char16_t* message) {
  LcUSysErrorState& s = sysErrorState;
  Note(severity, component, id, data, message);

  auto handled = [&](LcUErrorHandler handler) {
    return handler && handler(severity, component, id, data, message) != 0;
  };
  bool general = severity != eNONE;
  if (startLevel < 6 && handled(Exact(severity, component, id))) return 1;
  if (startLevel < 5 && handled(severity == eALL ? AnyOf(component) : At(Slot(severity, component)))) return 1;
  if (startLevel < 4 && general && handled(component ? component->anyHandler : s.anyHandler)) return 1;
  if (startLevel < 3 && general && handled(At(Slot(severity, nullptr)))) return 1;
  if (startLevel < 2 && general && handled(s.anyHandler)) return 1;

  if (severity != 1 && severity != 4 && severity != eNONE) {
    Log("LcUSysError: No handler for error\n");
    Fatal();
  }
  return 0;
}

void LcUSysError::SetFatalHook(LcUFatalHook hook) {
  sysErrorState.fatalHook = hook;
}

void LcUSysError::SetExitHook(LcUExitHook hook) {
  sysErrorState.exitHook = hook;
}

void LcUSysErrorState::CallFatalHook() {
  if (fatalHook)
    fatalHook();
  else
    LcUSysErrorPlatform::BreakIfDebugged();
}

void LcUSysError::Fatal() {
  sysErrorState.CallFatalHook();
  if (sysErrorState.dumpPath[0]) {
    LcUSysErrorPlatform::Fault();
    Exit(4);
  }
  std::abort();
}

void LcUSysError::Exit(int code) {
  if (sysErrorState.exitHook) sysErrorState.exitHook(code);
  LcUSysErrorPlatform::Terminate(code);
}

namespace {
int* volatile nullTarget = nullptr;
}

// The same on every platform: a real memory fault, not a signal raised.
__attribute__((no_sanitize("null"))) void LcUSysErrorPlatform::Fault() {
  *static_cast<volatile int*>(nullTarget) = 0;
}
