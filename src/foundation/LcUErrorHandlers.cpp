#include <cstdio>

#include "foundation/LcUError.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

namespace {
bool TreatedAsFatal(int severity) {
  return severity != LcUError::eWARNING && severity != LcUError::eDEBUG;
}

// Without strings nothing can be converted: units above 0x7F print as '?'.
void PrintRaw(const char16_t* message) {
  std::fputs("Error while LcUString not available: ", stdout);
  char chunk[1024];
  const char16_t* at = message ? message : u"";
  while (*at) {
    at += LcUSysError::ToAscii(at, chunk, sizeof(chunk));
    std::fputs(chunk, stdout);
  }
}

void Print(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message, bool cut) {
  LcUString shown(message ? message : u"");
  if (cut && (severity == LcUError::ePRECONDITION || severity == LcUError::eASSERT)) {
    // What follows " at " is a source location.
    int32_t at = shown.Find(u" at ");
    if (at > 0) shown.SetLength(at);
  }
  LcUString text;
  text.Format(u"Handle Severity(%hs) component(%hs) id(%d), data(%p), msg(%ls)",
              LcUError::HandlerSeverityName(severity), component && component->name ? component->name : "", id,
              data, shown.Get());
  LcUStringA narrow;
  LcUString::WideToMultiByte(text.Get(), narrow);
  std::fputs(narrow.Get() ? narrow.Get() : "", stdout);
  std::fputs("\n", stdout);
}

int PrintThenMaybeExit(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
  bool available = LcUString::IsAvailable();
  if (available)
    Print(severity, component, id, data, message, false);
  else
    PrintRaw(message);
  // Exit skips the C library's flush.
  std::fflush(stdout);
  if (!available || TreatedAsFatal(severity)) LcUSysError::Exit(1);
  return 1;
}

int PrintOnly(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message, bool cut) {
  if (LcUString::IsAvailable())
    Print(severity, component, id, data, message, cut);
  else
    PrintRaw(message);
  std::fflush(stdout);
  return 1;
}
}  // namespace

int LcUError::PrintAndExitHandler(int severity, LcUComponent* component, int32_t id, void* data,
                                  const char16_t* message) {
  return PrintThenMaybeExit(severity, component, id, data, message);
}

int LcUError::PrintAndExitIgnoringWarningsHandler(int severity, LcUComponent* component, int32_t id, void* data,
                                                  const char16_t* message) {
  if (severity == eWARNING) return 1;
  return PrintThenMaybeExit(severity, component, id, data, message);
}

int LcUError::PrintHandler(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
  return PrintOnly(severity, component, id, data, message, true);
}

int LcUError::PrintUncutHandler(int severity, LcUComponent* component, int32_t id, void* data,
                                const char16_t* message) {
  return PrintOnly(severity, component, id, data, message, false);
}
