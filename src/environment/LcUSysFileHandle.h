#pragma once
#include <cstdint>
#include <cstdio>

// A buffered file opened through the file layer; null stream when closed.
class LcUSysFileHandle {
public:
  enum { eACCESS_READ = 0, eACCESS_WRITE = 1, eACCESS_APPEND = 2, eACCESS_READ_WRITE = 3 };
  enum { eCREATE_NEW = 0, eCREATE_ALWAYS = 1, eOPEN_ALWAYS = 2, eOPEN_EXISTING = 3, eTRUNCATE_EXISTING = 4 };
  enum { eMODE_DEFAULT = 0, eMODE_BINARY = 1, eMODE_TEXT = 2 };
  enum { eDENY_ALL = 0, eDENY_WRITE = 1, eDENY_READ = 2, eDENY_NONE = 3 };
  enum { eHINT_TEMPORARY = 1, eHINT_SHORT_LIVED = 2, eHINT_SEQUENTIAL = 4, eHINT_RANDOM = 8 };
  enum { ePERMISSION_WRITE = 128, ePERMISSION_READ = 256 };

  LcUSysFileHandle() = default;
  ~LcUSysFileHandle() { Close(); }
  LcUSysFileHandle(const LcUSysFileHandle&) = delete;
  LcUSysFileHandle& operator=(const LcUSysFileHandle&) = delete;

  // On Linux the sharing modes other than deny-none take an advisory lock
  // (shared for reading, exclusive otherwise) and fail when it is held.
  bool Open(const char16_t* path, int access, int creation, int mode, int sharing, int hints, int permission);
  // True when the stream closed without error; a closed handle answers true.
  bool Close();
  FILE* GetStream() const { return stream; }
  // Hands the stream to the caller, who closes it with fclose.
  FILE* Detach() {
    FILE* detached = stream;
    stream = nullptr;
    return detached;
  }
  bool IsOpen() const { return stream != nullptr; }

private:
  FILE* stream = nullptr;
};
