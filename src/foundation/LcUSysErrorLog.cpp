#include <cstdio>
#include <cstring>
#include <new>

#include "foundation/LcUSysError.h"
#include "foundation/LcUSysErrorPlatform.h"
#include "foundation/LcUSysErrorState.h"

namespace {
void ToConsole(const char* text, void*) {
  LcUSysErrorPlatform::ConsoleWrite(text, uint32_t(std::strlen(text)));
}

void ToFile(const char* text, void* file) {
  std::fputs(text, static_cast<FILE*>(file));
}

// Appends source to target at *at; false when it doesn't fit with a terminator.
bool Put(char16_t* target, int32_t capacity, int32_t* at, const char16_t* source, int32_t count) {
  if (*at + count >= capacity) return false;
  std::memcpy(target + *at, source, size_t(count) * sizeof(char16_t));
  *at += count;
  target[*at] = 0;
  return true;
}

int32_t Length(const char16_t* text) {
  int32_t n = 0;
  while (text && text[n]) ++n;
  return n;
}

// Called with the lock held; leaves the file closed when there is no name
// or it can't be opened.
bool OpenLogFile(LcUSysErrorState& s) {
  if (s.logFile) std::fclose(s.logFile);
  s.logFile = nullptr;
  char16_t composed[2 * LcUSysErrorState::ePATH_SIZE + 8];
  const char16_t* path = s.logPath;
  if (!path[0]) {
    if (!s.logFolder[0]) return false;
    const char16_t* runName = s.RunName();
    int32_t at = 0;
    int32_t capacity = int32_t(sizeof(composed) / sizeof(composed[0]));
    Put(composed, capacity, &at, s.logFolder, Length(s.logFolder));
    Put(composed, capacity, &at, u"\\", 1);
    Put(composed, capacity, &at, runName, Length(runName));
    Put(composed, capacity, &at, u".txt", 4);
    path = composed;
  }
  s.logFile = LcUSysErrorPlatform::OpenLogFile(path);
  if (!s.logFile) return false;
  std::setvbuf(s.logFile, nullptr, _IONBF, 0);
  s.Replay(ToFile, s.logFile);
  return true;
}

bool SetPath(char16_t* target, const char16_t* path) {
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  if (!LcUSysErrorState::CopyText(target, LcUSysErrorState::ePATH_SIZE, path)) return false;
  if (s.logFile) OpenLogFile(s);
  return true;
}
}  // namespace

bool LcUSysErrorState::CopyText(char16_t* target, int32_t capacity, const char16_t* source) {
  int32_t count = Length(source);
  if (count >= capacity) return false;
  int32_t at = 0;
  target[0] = 0;
  return Put(target, capacity, &at, source, count);
}

std::unique_lock<std::mutex> LcUSysErrorState::Lock() {
  // Built on first use and never destroyed, so logging works at any time.
  alignas(std::mutex) static unsigned char storage[sizeof(std::mutex)];
  static std::mutex* mutex = new (storage) std::mutex;
  std::unique_lock<std::mutex> guard(*mutex, std::defer_lock);
  if (lockReady) guard.lock();
  return guard;
}

void LcUSysErrorState::Append(const char* text, uint32_t length) {
  // A text is never split: it moves whole to the next stretch.
  if (writePos + length + 1 > eBUFFER_SIZE) {
    if (inRing) {
      wrapMark = writePos;
      wrapped = true;
    } else {
      firstEnd = writePos;
      inRing = true;
    }
    writePos = 0;
  }
  char* buffer = inRing ? ring : firstBuffer;
  std::memcpy(buffer + writePos, text, length + 1);
  if (console) LcUSysErrorPlatform::ConsoleWrite(text, length);
  if (logFile) std::fputs(text, logFile);
  writePos += length;
}

void LcUSysErrorState::Parts(Part parts[3]) const {
  parts[0] = {firstBuffer, inRing ? firstEnd : writePos};
  parts[1] = {ring, 0};
  parts[2] = {ring, inRing ? writePos : 0};
  // The newest text's terminator cost the older part one byte.
  if (inRing && wrapped && wrapMark > writePos + 1) parts[1] = {ring + writePos + 1, wrapMark - writePos - 1};
}

void LcUSysErrorState::Replay(LcULogWriter writer, void* context) const {
  Part parts[3];
  Parts(parts);
  if (parts[0].length) writer(parts[0].text, context);
  if (wrapped) {
    writer(".\n.\n.\n.\n.\n", context);
    if (parts[1].length) writer(parts[1].text, context);
  }
  if (parts[2].length) writer(parts[2].text, context);
}

const char16_t* LcUSysErrorState::RunName() {
  if (runName[0]) return runName;
  char16_t path[ePATH_SIZE];
  int32_t end = LcUSysErrorPlatform::ExecutableName(path, ePATH_SIZE);
  int32_t start = 0;
  for (int32_t i = 0; i < end; ++i)
    if (path[i] == u'/' || path[i] == u'\\') start = i + 1;
  for (int32_t i = end - 1; i > start; --i)
    if (path[i] == u'.') {
      end = i;
      break;
    }
  char digits[48];
  int32_t count = std::snprintf(digits, sizeof(digits), "%d_%llu", int(LcUSysErrorPlatform::ProcessId()),
                                static_cast<unsigned long long>(LcUSysErrorPlatform::TickCount()));
  char16_t wide[48];
  for (int32_t i = 0; i <= count; ++i) wide[i] = char16_t(digits[i]);
  int32_t at = 0;
  Put(runName, ePATH_SIZE, &at, path + start, end - start);
  Put(runName, ePATH_SIZE, &at, wide, count);
  return runName;
}

void LcUSysError::Log(const char* text) {
  if (!text) text = "(null)";
  size_t length = std::strlen(text);
  if (length >= eLOG_BUFFER_SIZE) {
    Note(0, &component, -1, nullptr, u"Too long to log");
    return;
  }
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  s.Append(text, uint32_t(length));
}

void LcUSysError::ReplayLog(LcULogWriter writer, void* context) {
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  s.Replay(writer, context);
}

void LcUSysError::SetConsole(bool on) {
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  if (on && !s.consoleOpened) {
    s.consoleOpened = true;
    LcUSysErrorPlatform::OpenConsole(s.RunName());
    s.Replay(ToConsole, nullptr);
  }
  s.console = on;
}

bool LcUSysError::SetLogFile(bool on) {
  LcUSysErrorState& s = sysErrorState;
  auto guard = s.Lock();
  if (on) return s.logFile || OpenLogFile(s);
  if (s.logFile) std::fclose(s.logFile);
  s.logFile = nullptr;
  return false;
}

bool LcUSysError::SetLogFolder(const char16_t* path) {
  return SetPath(sysErrorState.logFolder, path);
}

bool LcUSysError::SetLogPath(const char16_t* path) {
  return SetPath(sysErrorState.logPath, path);
}

void LcUSysError::SetTraceLevel(int32_t level) {
  auto guard = sysErrorState.Lock();
  sysErrorState.traceLevel = level;
}

int32_t LcUSysError::GetTraceLevel() {
  return sysErrorState.traceLevel;
}

void LcUSysError::SetTraceFlags(uint32_t flags) {
  auto guard = sysErrorState.Lock();
  sysErrorState.traceFlags = flags;
}

uint32_t LcUSysError::GetTraceFlags() {
  return sysErrorState.traceFlags;
}

int32_t LcUSysError::ToAscii(const char16_t* text, char* target, int32_t capacity) {
  if (capacity <= 0) return 0;
  int32_t n = 0;
  for (; text && text[n] && n < capacity - 1; ++n) target[n] = text[n] > 0x7F ? '?' : char(text[n]);
  target[n] = 0;
  return n;
}
