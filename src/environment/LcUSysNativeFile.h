#pragma once
#include <cstdint>

// The low-level form of an open file: a Win32 handle on Windows, a
// descriptor on Linux. Access and creation numbers are those of
// LcUSysFileHandle; only disk files are kept open.
class LcUSysNativeFile {
public:
#ifdef _WIN32
  typedef void* Handle;
  static constexpr Handle kClosed = nullptr;
#else
  typedef int Handle;
  static constexpr Handle kClosed = -1;
#endif
  enum { eSHARE_READ = 1, eSHARE_WRITE = 2 };
  enum { eHINT_DELETE_ON_CLOSE = 1, eHINT_TEMPORARY = 2, eHINT_SEQUENTIAL = 4, eHINT_RANDOM = 8, eHINT_NO_BUFFERING = 16 };

  LcUSysNativeFile() = default;
  ~LcUSysNativeFile() { Close(); }
  LcUSysNativeFile(const LcUSysNativeFile&) = delete;
  LcUSysNativeFile& operator=(const LcUSysNativeFile&) = delete;

  // A size other than 0 is set at once. On Linux sharing other than read
  // and write takes an advisory lock; no buffering is only a hint there.
  bool Open(const char16_t* path, int access, int creation, int sharing, int hints, int64_t size);
  bool Close();
  bool IsOpen() const { return handle != kClosed; }
  Handle Get() const { return handle; }
  // Pushes what the system holds for the file to the disk.
  bool Sync();

private:
  Handle handle = kClosed;
};
