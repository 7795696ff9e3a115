#pragma once
#include <cstdio>

// Windows' text mode for reading, which Linux streams lack: CR LF reads as
// LF, and Ctrl-Z ends the file.
class LcUSysTextStream {
public:
  // A read stream over fd that owns it; null, fd still open, on failure.
  static FILE* Open(int fd);
};
