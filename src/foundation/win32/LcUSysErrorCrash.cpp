#include <windows.h>

#include <dbghelp.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cwchar>

#include "foundation/LcUSysError.h"
#include "foundation/LcUSysErrorPlatform.h"
#include "foundation/LcUSysErrorState.h"

namespace {
typedef BOOL(WINAPI* WriteDumpFunction)(HANDLE, DWORD, HANDLE, MINIDUMP_TYPE, PMINIDUMP_EXCEPTION_INFORMATION,
                                        PMINIDUMP_USER_STREAM_INFORMATION, PMINIDUMP_CALLBACK_INFORMATION);
typedef BOOL(WINAPI* ReadStreamFunction)(PVOID, ULONG, PMINIDUMP_DIRECTORY*, PVOID*, ULONG*);
typedef BOOL(WINAPI* GetPolicyFunction)(LPDWORD);
typedef BOOL(WINAPI* SetPolicyFunction)(DWORD);
typedef void(__cdecl* SignalFunction)(int);

constexpr ULONG32 eDUMP_SIGNATURE = 0x504D444D;  // "MDMP"

bool installed = false;
LPTOP_LEVEL_EXCEPTION_FILTER previousFilter = nullptr;
_invalid_parameter_handler previousInvalidParameter = nullptr;
_purecall_handler previousPurecall = nullptr;
SignalFunction previousAbort = nullptr;
SetPolicyFunction setPolicy = nullptr;
DWORD previousPolicy = 0;

template <typename Function>
Function Find(HMODULE module, const char* name) {
  return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

// A copy shipped beside the program wins over the system's.
HMODULE LoadDbgHelp() {
  wchar_t path[MAX_PATH + 32];
  DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
  if (n > 0 && n < MAX_PATH) {
    if (wchar_t* slash = wcsrchr(path, L'\\')) {
      wcscpy(slash + 1, L"dbghelp\\DBGHELP.DLL");
      if (HMODULE module = LoadLibraryW(path)) return module;
    }
  }
  return LoadLibraryW(L"DBGHELP.DLL");
}

// These end every such case in the crash filter.
void __cdecl OnInvalidParameter(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, uintptr_t) {
  LcUSysErrorPlatform::Fault();
}

void __cdecl OnPurecall() {
  LcUSysErrorPlatform::Fault();
}

void __cdecl OnAbort(int) {
  LcUSysErrorPlatform::Fault();
}

BOOL CALLBACK OnDumpCallback(PVOID, const PMINIDUMP_CALLBACK_INPUT input, PMINIDUMP_CALLBACK_OUTPUT output) {
  if (input->CallbackType != MemoryCallback) return TRUE;
  uint64_t base = 0;
  uint32_t size = 0;
  if (!sysErrorState.rangeCallback(&base, &size)) return FALSE;
  output->MemoryBase = base;
  output->MemorySize = size;
  return TRUE;
}

LONG WINAPI CrashFilter(EXCEPTION_POINTERS* exception) {
  LcUSysErrorState& s = sysErrorState;
  s.CallFatalHook();
  if (!LcUSysErrorPlatform::WriteCrashRecord(s.dumpPath, s.logInDump, s.dumpType, exception, s.preCallback))
    return EXCEPTION_CONTINUE_SEARCH;
  if (s.postCallback) s.postCallback(s.dumpPath);
  LcUSysError::Exit(4);
}

struct MappedDump {
  ReadStreamFunction read;
  void* base;
  uint64_t size;
};

bool FindStream(const void* record, uint32_t type, const char** data, uint32_t* size) {
  const MappedDump& dump = *static_cast<const MappedDump*>(record);
  PMINIDUMP_DIRECTORY directory = nullptr;
  void* stream = nullptr;
  ULONG streamSize = 0;
  if (!dump.read(dump.base, type, &directory, &stream, &streamSize)) return false;
  *data = static_cast<const char*>(stream);
  *size = streamSize;
  return true;
}

int NameSystem(const MINIDUMP_SYSTEM_INFO& info, char* text, size_t size) {
  unsigned major = info.MajorVersion;
  unsigned minor = info.MinorVersion;
  if (info.PlatformId == 1) {
    if (major != 4) return std::snprintf(text, size, "Windows 9X %d.%d", major, minor);
    if (minor == 0) return std::snprintf(text, size, "Windows 95");
    if (minor == 10) return std::snprintf(text, size, "Windows 98");
    if (minor == 90) return std::snprintf(text, size, "Windows ME");
    return std::snprintf(text, size, "Windows 9X 4.%d", minor);
  }
  if (info.PlatformId == 2) {
    if (major == 4) return std::snprintf(text, size, "Windows NT 4.%d", minor);
    if (major == 5 && minor == 0) return std::snprintf(text, size, "Windows 2000");
    if (major == 5 && minor == 1) return std::snprintf(text, size, "Windows XP");
    return std::snprintf(text, size, "Windows NT version %d.%d", major, minor);
  }
  return std::snprintf(text, size, "Unknown OS platform %d, version %d.%d", int(info.PlatformId), major, minor);
}

void DescribeSystem(const MappedDump& dump, const MINIDUMP_SYSTEM_INFO& info, LcULogWriter writer,
                    void* context) {
  char text[1024];
  int at = NameSystem(info, text, sizeof(text));
  char servicePack[256] = "";
  uint64_t rva = info.CSDVersionRva;
  if (rva + sizeof(ULONG32) <= dump.size) {
    const MINIDUMP_STRING* name = reinterpret_cast<const MINIDUMP_STRING*>(static_cast<char*>(dump.base) + rva);
    if (rva + sizeof(ULONG32) + name->Length <= dump.size) {
      int n = WideCharToMultiByte(CP_ACP, 0, name->Buffer, int(name->Length / 2), servicePack,
                                  sizeof(servicePack) - 1, nullptr, nullptr);
      servicePack[n > 0 ? n : 0] = 0;
    }
  }
  unsigned build = info.PlatformId == 1 ? info.BuildNumber & 0xFFFF : info.BuildNumber;
  at += std::snprintf(text + at, sizeof(text) - size_t(at), " %s (build %d)\n", servicePack, build);
  static const struct {
    unsigned bit;
    const char* name;
  } suites[] = {{2, "    Back Office\n"},
                {10, "    Web Edition\n"},
                {7, "    Datacenter Edition\n"},
                {1, nullptr},
                {9, "    Home Edition\n"},
                {0, "    Small Business Server\n"},
                {5, "    Small Business Server (Restricted License)\n"},
                {4, "    Terminal Services\n"}};
  for (const auto& suite : suites) {
    if (!(info.SuiteMask & (1u << suite.bit))) continue;
    const char* name = suite.name;
    if (!name) name = info.ProductType ? "    Enterprise Edition\n" : "    Advanced Server\n";
    at += std::snprintf(text + at, sizeof(text) - size_t(at), "%s", name);
  }
  writer(text, context);
}
}  // namespace

void LcUSysErrorPlatform::InstallCrashHandlers() {
  if (installed) return;
  installed = true;
  previousInvalidParameter = _set_invalid_parameter_handler(OnInvalidParameter);
  previousPurecall = _set_purecall_handler(OnPurecall);
  previousAbort = std::signal(SIGABRT, OnAbort);
  // Exceptions thrown inside callbacks would otherwise be swallowed.
  HMODULE kernel = LoadLibraryW(L"kernel32.dll");
  auto getPolicy = Find<GetPolicyFunction>(kernel, "GetProcessUserModeExceptionPolicy");
  setPolicy = Find<SetPolicyFunction>(kernel, "SetProcessUserModeExceptionPolicy");
  if (!getPolicy || !setPolicy || !getPolicy(&previousPolicy) || !setPolicy(previousPolicy & ~1u))
    setPolicy = nullptr;
  previousFilter = SetUnhandledExceptionFilter(CrashFilter);
}

void LcUSysErrorPlatform::RemoveCrashHandlers() {
  if (!installed) return;
  installed = false;
  _set_invalid_parameter_handler(previousInvalidParameter);
  _set_purecall_handler(previousPurecall);
  std::signal(SIGABRT, previousAbort);
  if (setPolicy) setPolicy(previousPolicy);
  setPolicy = nullptr;
  SetUnhandledExceptionFilter(previousFilter);
}

bool LcUSysErrorPlatform::WriteCrashRecord(const char16_t* path, bool logInDump, uint32_t dumpType,
                                           void* exception, LcUDumpCallback preCallback) {
  auto writeDump = Find<WriteDumpFunction>(LoadDbgHelp(), "MiniDumpWriteDump");
  if (!writeDump) return false;
  if (preCallback && !preCallback(path)) return false;
  HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  MINIDUMP_EXCEPTION_INFORMATION exceptionInfo{GetCurrentThreadId(), static_cast<EXCEPTION_POINTERS*>(exception),
                                               FALSE};
  MINIDUMP_USER_STREAM streams[3];
  MINIDUMP_USER_STREAM_INFORMATION userStreams{0, streams};
  if (logInDump) {
    LcUSysErrorState::Part parts[3];
    int count = sysErrorState.DumpParts(parts);
    for (int i = 0; i < count; ++i)
      streams[i] = {LcUSysErrorState::eLOG_STREAM + ULONG32(i), parts[i].length + 1,
                    const_cast<char*>(parts[i].text)};
    userStreams.UserStreamCount = ULONG(count);
  }
  MINIDUMP_CALLBACK_INFORMATION callback{OnDumpCallback, nullptr};
  bool ranges = sysErrorState.rangeCallback && !(dumpType & 2);
  BOOL written = writeDump(GetCurrentProcess(), GetCurrentProcessId(), file, MINIDUMP_TYPE(dumpType),
                           exception ? &exceptionInfo : nullptr, logInDump ? &userStreams : nullptr,
                           ranges ? &callback : nullptr);
  CloseHandle(file);
  return written;
}

bool LcUSysError::ReadDumpLog(const char16_t* path, LcULogWriter writer, void* context) {
  auto read = Find<ReadStreamFunction>(LoadDbgHelp(), "MiniDumpReadDumpStream");
  if (!read) return false;
  HANDLE file = CreateFileW(reinterpret_cast<const wchar_t*>(path), GENERIC_READ, FILE_SHARE_READ, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  LARGE_INTEGER size{};
  HANDLE mapping = nullptr;
  if (GetFileSizeEx(file, &size) && size.QuadPart >= LONGLONG(sizeof(MINIDUMP_HEADER)))
    mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
  CloseHandle(file);
  if (!mapping) return false;
  void* base = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  CloseHandle(mapping);
  if (!base) return false;
  MappedDump dump{read, base, uint64_t(size.QuadPart)};
  bool ok = static_cast<const MINIDUMP_HEADER*>(base)->Signature == eDUMP_SIGNATURE;
  if (ok) {
    const char* info = nullptr;
    uint32_t infoSize = 0;
    if (FindStream(&dump, SystemInfoStream, &info, &infoSize) && infoSize == sizeof(MINIDUMP_SYSTEM_INFO))
      DescribeSystem(dump, *reinterpret_cast<const MINIDUMP_SYSTEM_INFO*>(info), writer, context);
    LcUSysErrorState::PrintLogParts(FindStream, &dump, writer, context);
  }
  UnmapViewOfFile(base);
  return ok;
}
