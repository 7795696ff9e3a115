#pragma once
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <mutex>

#include "foundation/LcUSysError.h"

// The process-wide state of LcUSysError, shared by its portable and platform
// files. It is constant-initialised, so it works before any constructor has
// run and after every destructor.
struct LcUSysErrorState {
  static constexpr uint32_t eBUFFER_SIZE = LcUSysError::eLOG_BUFFER_SIZE;
  static constexpr int32_t ePATH_SIZE = 1024;
  // Crash records carry the log parts as streams of this type and up.
  static constexpr uint32_t eLOG_STREAM = 65536;

  // A stored stretch of the log; text[length] is its terminator.
  struct Part {
    const char* text;
    uint32_t length;
  };

  LcUComponent* first = nullptr;
  LcUComponent* last = nullptr;
  bool registering = false;

  LcUErrorHandler preHandler = nullptr;
  LcUErrorHandler anyHandler = nullptr;
  LcUErrorHandler severityHandlers[6] = {};
  LcUFatalHook fatalHook = nullptr;
  LcUExitHook exitHook = nullptr;

  std::atomic<bool> lockReady{false};
  // The first buffer is filled once and kept; the second runs as a ring.
  char firstBuffer[eBUFFER_SIZE] = {};
  char ring[eBUFFER_SIZE] = {};
  bool inRing = false;
  bool wrapped = false;
  uint32_t writePos = 0;
  uint32_t firstEnd = 0;
  uint32_t wrapMark = 0;

  bool console = false;
  bool consoleOpened = false;
  FILE* logFile = nullptr;
  char16_t logFolder[ePATH_SIZE] = {};
  char16_t logPath[ePATH_SIZE] = {};
  char16_t runName[ePATH_SIZE] = {};

  int32_t traceLevel = 0;
  uint32_t traceFlags = 0;

  char16_t dumpPath[LcUSysError::eDUMP_PATH_SIZE] = {};
  bool logInDump = false;
  uint32_t dumpType = 0;
  LcUDumpCallback preCallback = nullptr;
  LcUDumpCallback postCallback = nullptr;
  LcUDumpRangeCallback rangeCallback = nullptr;

  // Holds the log lock once LcUSysError is up; before and after, nothing.
  std::unique_lock<std::mutex> Lock();
  void Append(const char* text, uint32_t length);
  // The first buffer, the ring's older part and the ring's newer part; a
  // part with nothing has length 0. The crash path reads them without a lock.
  void Parts(Part parts[3]) const;
  void Replay(LcULogWriter writer, void* context) const;
  // The parts as a crash record stores them: the first always, with a
  // placeholder when empty, the others only when they have text.
  int DumpParts(Part parts[3]) const;
  const char16_t* RunName();
  void CallFatalHook();

  // Null counts as empty; false, with target untouched, when it doesn't fit.
  static bool CopyText(char16_t* target, int32_t capacity, const char16_t* source);

  // Looks a stream up in a crash record mapped into memory.
  typedef bool (*FindStream)(const void* record, uint32_t type, const char** data, uint32_t* size);
  static void PrintLogParts(FindStream find, const void* record, LcULogWriter writer, void* context);
};

extern LcUSysErrorState sysErrorState;
