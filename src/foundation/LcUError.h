#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// Called by FatalText as (context, text, 2, 0, -1).
typedef void (*LcUErrorHook)(void* context, const char* text, int32_t kind, int32_t a, int32_t b);

// The front of the foundation's reporting: severities, formatted reports,
// the log's formatted writers, the trace writers and the stock handlers.
// Dispatch and the fatal stop are LcUSysError's.
class LcUError {
public:
  enum Severity : int32_t { eERROR = 0, eWARNING = 1, ePRECONDITION = 2, eASSERT = 3, eDEBUG = 4 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // The log line's names, "UKNOWN" for a value out of the table.
  static const char* SeverityName(int severity);
  // The stock handlers' names, "UNKNOWN" for a value out of the table.
  static const char* HandlerSeverityName(int severity);

  // The short forms post id -1 and no data. Narrow results are converted as
  // multibyte text.
  static void PostF(int severity, LcUComponent* component, const char* format, ...);
  static void PostF(int severity, LcUComponent* component, const char16_t* format, ...);
  static void PostF(int severity, LcUComponent* component, int32_t id, void* data, const char* format, ...);
  static void PostF(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* format, ...);

  // Text into the log, without a severity; wide text goes in as UTF-8.
  static void LogF(const char* format, ...);
  static void LogF(const char16_t* format, ...);
  static void LogDouble(double value);
  static void LogInt(int32_t value);
  static void LogUInt(uint32_t value);
  static void LogInt64(int64_t value);
  static void LogUInt64(uint64_t value);
  static void LogPointer(const void* value);
  static void LogWide(const char16_t* text);

  // Write nothing and return false unless tracing is on and its level is at
  // least `level`. The prefix follows the trace flags: bit 0 the level,
  // bit 1 file and line, bit 2 the thread, bit 3 the UTC time.
  static bool TraceF(int32_t level, const char* format, ...);
  static bool TraceF(int32_t level, const char16_t* format, ...);
  static bool TraceAtF(int32_t level, const char* file, int32_t line, const char* format, ...);
  static bool TraceAtF(int32_t level, const char* file, int32_t line, const char16_t* format, ...);

  // Stock handlers for the hosting program to install. All print to
  // standard output and return 1.
  static int PrintAndExitHandler(int severity, LcUComponent* component, int32_t id, void* data,
                                 const char16_t* message);
  static int PrintAndExitIgnoringWarningsHandler(int severity, LcUComponent* component, int32_t id, void* data,
                                                 const char16_t* message);
  // Leaves out a source location after " at " for preconditions and asserts.
  static int PrintHandler(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message);
  static int PrintUncutHandler(int severity, LcUComponent* component, int32_t id, void* data,
                               const char16_t* message);

  // The report that must reach the user. With `fatal`, the hook sees it
  // first and the process ends with code 3 after logging it.
  static void FatalText(const char* text, bool fatal);
  static void SetFatalTextHook(LcUErrorHook hook, void* context);
};
