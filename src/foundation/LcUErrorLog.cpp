#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "foundation/LcUError.h"
#include "foundation/LcUErrorScratch.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"

namespace {
enum TraceFlag : uint32_t { eTRACE_LEVEL = 1, eTRACE_FILE = 2, eTRACE_THREAD = 4, eTRACE_TIME = 8 };

// The formatted text as the log takes it; the caller holds the lock.
const char* LogText(LcUErrorScratch& scratch, const char* format, va_list args) {
  return scratch.Format(format, args);
}

const char* LogText(LcUErrorScratch& scratch, const char16_t* format, va_list args) {
  return scratch.ToUTF8(scratch.Format(format, args));
}

template <typename Unit>
void LogFormatted(const Unit* format, va_list args) {
  LcUErrorScratch& scratch = LcUErrorScratch::Get();
  std::lock_guard<std::recursive_mutex> guard(scratch.lock);
  LcUSysError::Log(LogText(scratch, format, args));
}

bool Tracing(int32_t level) {
  int32_t current = LcUSysError::GetTraceLevel();
  return current > 0 && current >= level;
}

// Logs "Trace:" and what the flags ask for; the caller holds the lock.
void LogTracePrefix(int32_t level, const char* file, int32_t line, bool at) {
  uint32_t flags = LcUSysError::GetTraceFlags();
  char piece[48];
  LcUSysError::Log("Trace:");
  if (flags & eTRACE_LEVEL) {
    std::snprintf(piece, sizeof(piece), "%d:", level);
    LcUSysError::Log(piece);
  }
  std::time_t now = std::time(nullptr);
  if ((flags & eTRACE_TIME) && now >= 0) {
    int seconds = int(now % 86400);
    std::snprintf(piece, sizeof(piece), "%02d-%02d-%02d:", seconds / 3600, seconds / 60 % 60, seconds % 60);
    LcUSysError::Log(piece);
  }
  if (flags & eTRACE_THREAD) {
    std::snprintf(piece, sizeof(piece), "%d:", int(LcUSysError::CurrentThreadId()));
    LcUSysError::Log(piece);
  }
  if (at && (flags & eTRACE_FILE)) {
    LcUSysError::Log(file ? file : "");
    std::snprintf(piece, sizeof(piece), ":%d:", line);
    LcUSysError::Log(piece);
  }
}

template <typename Unit>
bool Trace(int32_t level, const char* file, int32_t line, bool at, const Unit* format, va_list args) {
  if (!Tracing(level)) return false;
  LcUErrorScratch& scratch = LcUErrorScratch::Get();
  std::lock_guard<std::recursive_mutex> guard(scratch.lock);
  LogTracePrefix(level, file, line, at);
  LcUSysError::Log(LogText(scratch, format, args));
  return true;
}
}  // namespace

void LcUError::LogF(const char* format, ...) {
  va_list args;
  va_start(args, format);
  LogFormatted(format, args);
  va_end(args);
}

void LcUError::LogF(const char16_t* format, ...) {
  va_list args;
  va_start(args, format);
  LogFormatted(format, args);
  va_end(args);
}

void LcUError::LogDouble(double value) {
  LogF("%g", value);
}

void LcUError::LogInt(int32_t value) {
  LogF("%d", value);
}

void LcUError::LogUInt(uint32_t value) {
  LogF("%u", value);
}

void LcUError::LogInt64(int64_t value) {
  LogF("%lld", static_cast<long long>(value));
}

void LcUError::LogUInt64(uint64_t value) {
  LogF("%llu", static_cast<unsigned long long>(value));
}

void LcUError::LogPointer(const void* value) {
  LogF("%p", value);
}

void LcUError::LogWide(const char16_t* text) {
  LcUErrorScratch& scratch = LcUErrorScratch::Get();
  std::lock_guard<std::recursive_mutex> guard(scratch.lock);
  LcUSysError::Log(scratch.ToUTF8(text));
}

bool LcUError::TraceF(int32_t level, const char* format, ...) {
  va_list args;
  va_start(args, format);
  bool written = Trace(level, nullptr, 0, false, format, args);
  va_end(args);
  return written;
}

bool LcUError::TraceF(int32_t level, const char16_t* format, ...) {
  va_list args;
  va_start(args, format);
  bool written = Trace(level, nullptr, 0, false, format, args);
  va_end(args);
  return written;
}

bool LcUError::TraceAtF(int32_t level, const char* file, int32_t line, const char* format, ...) {
  va_list args;
  va_start(args, format);
  bool written = Trace(level, file, line, true, format, args);
  va_end(args);
  return written;
}

bool LcUError::TraceAtF(int32_t level, const char* file, int32_t line, const char16_t* format, ...) {
  va_list args;
  va_start(args, format);
  bool written = Trace(level, file, line, true, format, args);
  va_end(args);
  return written;
}
