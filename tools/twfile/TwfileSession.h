#pragma once
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "TwfileOptions.h"

class LcUAppInfoProvider;
class LcUFileURLFile;
class LcUFileURLImpl;

// The streamed-file components, started with the user's options for the
// length of one command; the system's log is kept for the report.
class TwfileSession {
public:
  explicit TwfileSession(const TwfileOptions& options);
  ~TwfileSession();
  TwfileSession(const TwfileSession&) = delete;
  TwfileSession& operator=(const TwfileSession&) = delete;

  bool Started() const { return started; }
  LcUFileURLImpl* Engine() const { return engine; }
  // The file opened for reading, or with no server its complete cached
  // copy; on failure the exit code says why.
  LcUFileURLFile* Open(const char16_t* url, TwfileOptions::Exit& failure);
  // A remote location whose server gives no answer at all: unavailable
  // now, rather than failed.
  static bool Unreachable(const char16_t* url);
  // "twfile: what" on standard error, then what the system logged.
  TwfileOptions::Exit Fail(TwfileOptions::Exit code, const char* what, const char16_t* subject = nullptr) const;

private:
  const TwfileOptions& options;
  LcUFileURLImpl* engine = nullptr;
  bool started = false;
  LcUAppInfoProvider* appInfo = nullptr;
  LcUAppInfoProvider* previousAppInfo = nullptr;
  // How much of the log the start wrote: the report begins behind it.
  size_t logStart = 0;
};
