#include "foundation/LcUError.h"

#include <cstdarg>
#include <cstdint>

#include "foundation/LcUErrorScratch.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUError::component;

namespace {
constexpr int eNONE = 5;
constexpr uint32_t eUTF8 = 65001;
const char* const eNAMES[] = {"ERROR", "WARNING", "PRECONDITION", "ASSERT", "DEBUG", ""};

LcUErrorHook fatalTextHook = nullptr;
void* fatalTextContext = nullptr;

void PostNarrow(int severity, LcUComponent* component, int32_t id, void* data, const char* format,
                va_list args) {
  LcUString message;
  {
    LcUErrorScratch& scratch = LcUErrorScratch::Get();
    std::lock_guard<std::recursive_mutex> guard(scratch.lock);
    // Narrow text in the foundation is UTF-8, as the log is.
    LcUString::MultiByteToWide(scratch.Format(format, args), message, eUTF8);
  }
  LcUSysError::Post(severity, component, id, data, message.Get() ? message.Get() : u"");
}

void PostWide(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* format,
              va_list args) {
  LcUString message;
  {
    LcUErrorScratch& scratch = LcUErrorScratch::Get();
    std::lock_guard<std::recursive_mutex> guard(scratch.lock);
    message = scratch.Format(format, args);
  }
  LcUSysError::Post(severity, component, id, data, message.Get() ? message.Get() : u"");
}

// The pre-handler: one line per report, the message as UTF-8.
int LogLine(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
  const char* name = component && component->name ? component->name : "";
  unsigned shortData = unsigned(reinterpret_cast<uintptr_t>(data));
  bool plain = id == -1 && !data;
  LcUStringA line;
  if (severity == eNONE && plain)
    line.Format("%s, \"", name);
  else if (severity == eNONE)
    line.Format("%s id(%d), data(%x), \"", name, id, shortData);
  else if (plain)
    line.Format("%s: %s, \"", LcUError::SeverityName(severity), name);
  else
    line.Format("%s: %s id(%d), data(%x), \"", LcUError::SeverityName(severity), name, id, shortData);
  LcUErrorScratch& scratch = LcUErrorScratch::Get();
  std::lock_guard<std::recursive_mutex> guard(scratch.lock);
  line.Append(scratch.ToUTF8(message));
  line.Append("\"\n");
  LcUSysError::Log(line.Get());
  return 0;
}
}  // namespace

bool LcUError::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUError") != 1) return true;
  LcUSysError::InitSysError();
  LcUString::Initialize();
  LcUErrorScratch::Get();  // the lock; the strings grow on first use
  LcUSysError::SetPreHandler(LogLine);
  return true;
}

void LcUError::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUSysError::SetPreHandler(nullptr);
  {
    LcUErrorScratch& scratch = LcUErrorScratch::Get();
    std::lock_guard<std::recursive_mutex> guard(scratch.lock);
    scratch.Free();
  }
  LcUString::Terminate();
  LcUSysError::TermSysError();
}

const char* LcUError::SeverityName(int severity) {
  return severity >= 0 && severity <= eNONE ? eNAMES[severity] : "UKNOWN";
}

const char* LcUError::HandlerSeverityName(int severity) {
  return severity >= 0 && severity <= eNONE ? eNAMES[severity] : "UNKNOWN";
}

void LcUError::PostF(int severity, LcUComponent* component, const char* format, ...) {
  va_list args;
  va_start(args, format);
  PostNarrow(severity, component, -1, nullptr, format, args);
  va_end(args);
}

void LcUError::PostF(int severity, LcUComponent* component, const char16_t* format, ...) {
  va_list args;
  va_start(args, format);
  PostWide(severity, component, -1, nullptr, format, args);
  va_end(args);
}

void LcUError::PostF(int severity, LcUComponent* component, int32_t id, void* data, const char* format, ...) {
  va_list args;
  va_start(args, format);
  PostNarrow(severity, component, id, data, format, args);
  va_end(args);
}

void LcUError::PostF(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* format,
                     ...) {
  va_list args;
  va_start(args, format);
  PostWide(severity, component, id, data, format, args);
  va_end(args);
}

void LcUError::SetFatalTextHook(LcUErrorHook hook, void* context) {
  fatalTextHook = hook;
  fatalTextContext = context;
}

void LcUError::FatalText(const char* text, bool fatal) {
  if (fatal && fatalTextHook) fatalTextHook(fatalTextContext, text, 2, 0, -1);
  {
    LcUErrorScratch& scratch = LcUErrorScratch::Get();
    std::lock_guard<std::recursive_mutex> guard(scratch.lock);
    LcUSysError::Log(text);
  }
  if (fatal) LcUSysError::Exit(3);
}
