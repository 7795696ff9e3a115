#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "foundation/LcUSysError.h"
#include "foundation/LcUSysErrorPlatform.h"
#include "foundation/LcUSysErrorState.h"
#include "foundation/posix/LcUSysErrorPath.h"

// The crash file, in the machine's byte order:
//   "TWCRASH1"                          8 bytes
//   records, each: uint32 type, uint32 size, then size bytes
//     type 7       system information text with its terminator
//     type 65536+  log parts, text with terminator, numbered without gaps
//     type 5       a memory range: uint64 address, then its bytes
// The types follow the minidump's stream types. A range that can't be read
// is written as zeros, so the sizes always hold.

namespace {
constexpr char eMAGIC[8] = {'T', 'W', 'C', 'R', 'A', 'S', 'H', '1'};
constexpr uint32_t eSYSTEM_INFO = 7;
constexpr uint32_t eMEMORY = 5;
constexpr int eSIGNALS[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
constexpr int eSIGNAL_COUNT = sizeof(eSIGNALS) / sizeof(eSIGNALS[0]);

struct sigaction previousActions[eSIGNAL_COUNT];
stack_t previousStack;
bool installed = false;
alignas(16) char alternateStack[65536];
// Prepared when the crash path is armed: the handler may only open, write
// and close.
char crashPath[3 * LcUSysError::eDUMP_PATH_SIZE + 1];
char systemInfo[1024];

void DescribeSystem() {
  utsname name{};
  if (uname(&name) != 0)
    std::snprintf(systemInfo, sizeof(systemInfo), "Unknown system\n");
  else
    std::snprintf(systemInfo, sizeof(systemInfo), "%s %s %s %s\n", name.sysname, name.release, name.version,
                  name.machine);
}

struct RecordWriter {
  int fd;
  bool ok = true;

  // Returns the count not written.
  size_t Put(const void* data, size_t size) {
    const char* at = static_cast<const char*>(data);
    while (size > 0) {
      ssize_t n = write(fd, at, size);
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) break;
      at += n;
      size -= size_t(n);
    }
    return size;
  }

  void Bytes(const void* data, size_t size) {
    if (Put(data, size)) ok = false;
  }

  void Header(uint32_t type, uint32_t size) {
    uint32_t header[2] = {type, size};
    Bytes(header, sizeof(header));
  }

  void Memory(uint64_t base, uint32_t size) {
    if (size > UINT32_MAX - sizeof(base)) return;
    Header(eMEMORY, uint32_t(sizeof(base)) + size);
    Bytes(&base, sizeof(base));
    // write() answers EFAULT for an unreadable range instead of faulting.
    size_t left = Put(reinterpret_cast<const void*>(uintptr_t(base)), size);
    static const char zeros[4096] = {};
    while (left > 0 && ok) {
      size_t chunk = left < sizeof(zeros) ? left : sizeof(zeros);
      Bytes(zeros, chunk);
      left -= chunk;
    }
  }
};

bool WriteRecordFile(const char* name, const char16_t* path, bool logInDump, uint32_t dumpType,
                     LcUDumpCallback preCallback) {
  const LcUSysErrorState& s = sysErrorState;
  if (preCallback && !preCallback(path)) return false;
  int fd = open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  RecordWriter out{fd};
  out.Bytes(eMAGIC, sizeof(eMAGIC));
  uint32_t infoSize = uint32_t(std::strlen(systemInfo)) + 1;
  out.Header(eSYSTEM_INFO, infoSize);
  out.Bytes(systemInfo, infoSize);
  if (logInDump) {
    LcUSysErrorState::Part parts[3];
    int count = s.DumpParts(parts);
    for (int i = 0; i < count; ++i) {
      out.Header(LcUSysErrorState::eLOG_STREAM + uint32_t(i), parts[i].length + 1);
      out.Bytes(parts[i].text, parts[i].length + 1);
    }
  }
  uint64_t base = 0;
  uint32_t size = 0;
  if (s.rangeCallback && !(dumpType & 2))
    while (out.ok && s.rangeCallback(&base, &size)) out.Memory(base, size);
  if (close(fd) != 0) out.ok = false;
  return out.ok;
}

void OnFatalSignal(int signal, siginfo_t* info, void*) {
  LcUSysErrorState& s = sysErrorState;
  s.CallFatalHook();
  if (WriteRecordFile(crashPath, s.dumpPath, s.logInDump, s.dumpType, s.preCallback)) {
    if (s.postCallback) s.postCallback(s.dumpPath);
    LcUSysError::Exit(4);
  }
  // Leave the signal to what was there before. A fault repeats on return;
  // a signal that was sent must be sent again.
  LcUSysErrorPlatform::RemoveCrashHandlers();
  if (info->si_code <= 0) raise(signal);
}

struct MappedFile {
  const char* base;
  size_t size;
};

bool FindRecord(const void* record, uint32_t type, const char** data, uint32_t* size) {
  const MappedFile& file = *static_cast<const MappedFile*>(record);
  size_t at = sizeof(eMAGIC);
  uint32_t header[2];
  while (at + sizeof(header) <= file.size) {
    std::memcpy(header, file.base + at, sizeof(header));
    at += sizeof(header);
    if (header[1] > file.size - at) return false;
    if (header[0] == type) {
      *data = file.base + at;
      *size = header[1];
      return true;
    }
    at += header[1];
  }
  return false;
}
}  // namespace

void LcUSysErrorPlatform::InstallCrashHandlers() {
  if (!LcUSysErrorPath::ToSystem(sysErrorState.dumpPath, crashPath, sizeof(crashPath))) crashPath[0] = 0;
  DescribeSystem();
  if (installed) return;
  installed = true;
  // Only this thread gets the alternate stack; a stack overflow elsewhere
  // dies without a record.
  stack_t stack{};
  stack.ss_sp = alternateStack;
  stack.ss_size = sizeof(alternateStack);
  sigaltstack(&stack, &previousStack);
  struct sigaction action {};
  action.sa_sigaction = OnFatalSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK;
  sigemptyset(&action.sa_mask);
  for (int i = 0; i < eSIGNAL_COUNT; ++i) sigaction(eSIGNALS[i], &action, &previousActions[i]);
}

void LcUSysErrorPlatform::RemoveCrashHandlers() {
  if (!installed) return;
  installed = false;
  for (int i = 0; i < eSIGNAL_COUNT; ++i) sigaction(eSIGNALS[i], &previousActions[i], nullptr);
  sigaltstack(&previousStack, nullptr);
}

bool LcUSysErrorPlatform::WriteCrashRecord(const char16_t* path, bool logInDump, uint32_t dumpType, void*,
                                           LcUDumpCallback preCallback) {
  char name[3 * LcUSysErrorState::ePATH_SIZE + 1];
  if (!LcUSysErrorPath::ToSystem(path, name, sizeof(name))) return false;
  DescribeSystem();
  return WriteRecordFile(name, path, logInDump, dumpType, preCallback);
}

bool LcUSysError::ReadDumpLog(const char16_t* path, LcULogWriter writer, void* context) {
  char name[3 * LcUSysErrorState::ePATH_SIZE + 1];
  if (!LcUSysErrorPath::ToSystem(path, name, sizeof(name))) return false;
  int fd = open(name, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat info {};
  void* base = MAP_FAILED;
  if (fstat(fd, &info) == 0 && info.st_size >= off_t(sizeof(eMAGIC)))
    base = mmap(nullptr, size_t(info.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
  close(fd);
  if (base == MAP_FAILED) return false;
  MappedFile file{static_cast<const char*>(base), size_t(info.st_size)};
  bool ok = std::memcmp(file.base, eMAGIC, sizeof(eMAGIC)) == 0;
  if (ok) {
    const char* text = nullptr;
    uint32_t size = 0;
    if (FindRecord(&file, eSYSTEM_INFO, &text, &size) && size > 0 && text[size - 1] == 0) writer(text, context);
    LcUSysErrorState::PrintLogParts(FindRecord, &file, writer, context);
  }
  munmap(base, file.size);
  return ok;
}
