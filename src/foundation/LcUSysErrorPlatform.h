#pragma once
#include <cstdint>
#include <cstdio>

#include "foundation/LcUSysError.h"

// What LcUSysError needs of the system. Each platform folder has its twin.
class LcUSysErrorPlatform {
public:
  static void OpenConsole(const char16_t* title);
  static void ConsoleWrite(const char* text, uint32_t length);
  // Write, text mode, shared with other readers and writers.
  static FILE* OpenLogFile(const char16_t* path);
  // The running program's full path; 0 when unknown.
  static int32_t ExecutableName(char16_t* target, int32_t capacity);
  static uint32_t ProcessId();
  static uint64_t TickCount();
  static void BreakIfDebugged();
  [[noreturn]] static void Terminate(int code);
  // Writes through a null pointer, so the fault reaches the crash handler.
  static void Fault();

  static void InstallCrashHandlers();
  static void RemoveCrashHandlers();
  // The pre-callback, when given, may cancel the dump.
  static bool WriteCrashRecord(const char16_t* path, bool logInDump, uint32_t dumpType, void* exception,
                               LcUDumpCallback preCallback);
};
