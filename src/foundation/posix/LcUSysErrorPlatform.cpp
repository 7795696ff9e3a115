#include "foundation/LcUSysErrorPlatform.h"

#include <fcntl.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "foundation/LcUSysError.h"
#include "foundation/LcUUtf8.h"
#include "foundation/posix/LcUSysErrorPath.h"

namespace {
void WriteAll(int fd, const char* text, size_t length) {
  while (length > 0) {
    ssize_t n = write(fd, text, length);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return;
    text += n;
    length -= size_t(n);
  }
}
}  // namespace

// The process's terminal is its console; a title is set only on a terminal.
void LcUSysErrorPlatform::OpenConsole(const char16_t* title) {
  if (!isatty(STDOUT_FILENO)) return;
  char text[3 * 1024 + 8] = "\033]0;";
  int64_t length = 0;
  while (title[length] && length < 1024) ++length;
  bool unpaired = false;
  int64_t n = 4 + LcUUtf8::EncodeFromUTF16(title, length, text + 4, true, unpaired);
  text[n++] = '\007';
  WriteAll(STDOUT_FILENO, text, size_t(n));
}

void LcUSysErrorPlatform::ConsoleWrite(const char* text, uint32_t length) {
  WriteAll(STDOUT_FILENO, text, length);
}

FILE* LcUSysErrorPlatform::OpenLogFile(const char16_t* path) {
  char name[3 * 2048 + 1];
  if (!LcUSysErrorPath::ToSystem(path, name, sizeof(name))) return nullptr;
  return std::fopen(name, "we");
}

int32_t LcUSysErrorPlatform::ExecutableName(char16_t* target, int32_t capacity) {
  char path[1024];
  ssize_t n = readlink("/proc/self/exe", path, sizeof(path));
  if (n <= 0 || n >= capacity) return 0;
  bool valid = true;
  return int32_t(LcUUtf8::DecodeToUTF16(path, n, target, valid));
}

uint32_t LcUSysErrorPlatform::ProcessId() {
  return uint32_t(getpid());
}

uint64_t LcUSysErrorPlatform::TickCount() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return uint64_t(now.tv_sec) * 1000 + uint64_t(now.tv_nsec) / 1000000;
}

// Async-signal-safe: the crash handler calls it too.
void LcUSysErrorPlatform::BreakIfDebugged() {
  char status[4096];
  int fd = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return;
  ssize_t n = read(fd, status, sizeof(status) - 1);
  close(fd);
  if (n <= 0) return;
  status[n] = 0;
  const char* tracer = std::strstr(status, "TracerPid:");
  if (!tracer) return;
  tracer += 10;
  while (*tracer == ' ' || *tracer == '\t') ++tracer;
  if (*tracer >= '1' && *tracer <= '9') raise(SIGTRAP);
}

void LcUSysErrorPlatform::Terminate(int code) {
  _exit(code);
}

uint32_t LcUSysError::CurrentThreadId() {
  return uint32_t(gettid());
}
