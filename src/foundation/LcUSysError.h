#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// Receives the log's text piece by piece, in order.
typedef void (*LcULogWriter)(const char* text, void* context);
typedef void (*LcUFatalHook)();
typedef void (*LcUExitHook)(int code);
// Given the dump path. Before a dump, returning 0 cancels it.
typedef int (*LcUDumpCallback)(const char16_t* path);
// Supplies one more memory range for a dump; returns 0 when there is none.
typedef int (*LcUDumpRangeCallback)(uint64_t* base, uint32_t* size);

// The bottom of the foundation: the component chain, the dispatch of error
// reports, the in-memory log and the crash path. It runs before anything
// else, so it uses neither LcUString nor the allocator.
class LcUSysError {
public:
  static constexpr uint32_t eLOG_BUFFER_SIZE = 524288;
  static constexpr int32_t eDUMP_PATH_SIZE = 260;

  static LcUComponent component;

  // 1 on the first reference, 0 on any other.
  static int RegisterComponent(LcUComponent* record, const char* name);
  // 1 on the last reference, 0 otherwise.
  static int UnregisterComponent(LcUComponent* record);
  static int InitSysError();
  static int TermSysError();

  // Return non-zero when a handler took the report.
  static int Post(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message);
  static int PostFixed(int severity, LcUComponent* component, int32_t id, void* data, int startLevel,
                       const char16_t* message);

  // A report that is survived: its log line only, no handler and never the
  // fatal stop.
  static void Note(int severity, LcUComponent* component, int32_t id, void* data, const char16_t* message);

  // Severity -1 is the handler for all severities. An id other than -1 needs
  // a component. Handlers are meant to be set during start-up.
  static bool SetHandler(int severity, LcUComponent* component, int32_t id, LcUErrorHandler handler);
  static LcUErrorHandler GetHandler(int severity, LcUComponent* component, int32_t id);
  static void RemoveHandler(int severity, LcUComponent* component, int32_t id);
  // Sees every report first; its result is ignored.
  static void SetPreHandler(LcUErrorHandler handler);
  static LcUErrorHandler GetPreHandler();

  static void Log(const char* text);
  // The writer runs under the log lock and must not log.
  static void ReplayLog(LcULogWriter writer, void* context);
  static void SetConsole(bool on);
  // True when a log file is open afterwards.
  static bool SetLogFile(bool on);
  static bool SetLogFolder(const char16_t* path);
  static bool SetLogPath(const char16_t* path);

  // Tracing is on while the level is above 0.
  static void SetTraceLevel(int32_t level);
  static int32_t GetTraceLevel();
  static void SetTraceFlags(uint32_t flags);
  static uint32_t GetTraceFlags();

  // A non-empty path arms the crash path; an empty or null one disarms it.
  static bool SetCrashOptions(const char16_t* dumpPath, bool logInDump, uint32_t dumpType,
                              LcUDumpCallback preCallback, LcUDumpCallback postCallback,
                              LcUDumpRangeCallback rangeCallback);
  static bool WriteDump(const char16_t* path, bool logInDump, uint32_t dumpType);
  static bool ReadDumpLog(const char16_t* path, LcULogWriter writer, void* context);

  static void SetFatalHook(LcUFatalHook hook);
  static void SetExitHook(LcUExitHook hook);
  [[noreturn]] static void Fatal();
  [[noreturn]] static void Exit(int code);

  static uint32_t CurrentThreadId();
  // Copies at most capacity - 1 units, each above 0x7F as '?': the form of
  // a wide text that needs no conversion. Returns the count written.
  static int32_t ToAscii(const char16_t* text, char* target, int32_t capacity);
};
