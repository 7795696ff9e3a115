#pragma once
#include <cstdio>
#include <cstdlib>
#include <string>

#include "foundation/LcUSysError.h"

// Helpers shared by the error, log and crash record tests.
namespace ErrorTesting {
inline void AppendTo(const char* text, void* target) {
  static_cast<std::string*>(target)->append(text);
}

inline std::string LogText() {
  std::string text;
  LcUSysError::ReplayLog(AppendTo, &text);
  return text;
}

// What an operation wrote to the log.
template <typename F>
std::string Logged(F operation) {
  size_t before = LogText().size();
  operation();
  return LogText().substr(before);
}

inline bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// A fatal hook that shows the log on stderr, where a death test looks.
inline void LogToStderr() {
  LcUSysError::ReplayLog([](const char* text, void*) { std::fputs(text, stderr); }, nullptr);
  std::fflush(stderr);
}

// Checks inside a child process, whose gtest assertions the parent never
// sees: Finish reports the failures on stderr and exits 0 only if none.
struct ChildChecks {
  std::string failures;

  void Expect(bool holds, const std::string& what) {
    if (!holds) failures += what + "\n";
  }

  [[noreturn]] void Finish() {
    std::fputs(failures.c_str(), stderr);
    std::fflush(stderr);
    std::_Exit(failures.empty() ? 0 : 1);
  }
};
}  // namespace ErrorTesting
