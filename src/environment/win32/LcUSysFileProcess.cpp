#include <windows.h>
#include <shellapi.h>
// windows.h would rename the member after the character width.
#undef GetCurrentDirectory

#include "environment/LcUSysFile.h"

namespace {
const wchar_t* Wide(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}

bool Take(const wchar_t* text, DWORD n, DWORD capacity, LcUString& out) {
  if (n == 0 || n >= capacity) {
    out.Clear();
    return false;
  }
  out.Assign(reinterpret_cast<const char16_t*>(text), int32_t(n));
  return true;
}
}  // namespace

bool LcUSysFile::Execute(const char16_t* file, const char16_t* parameters, bool wait) {
  if (!file) return false;
  SHELLEXECUTEINFOW info = {};
  info.cbSize = sizeof info;
  // Failures come back as the result; only the directory messages reach the user.
  info.fMask = SEE_MASK_FLAG_NO_UI | (wait ? SEE_MASK_NOCLOSEPROCESS : 0);
  info.lpVerb = L"open";
  info.lpFile = Wide(file);
  info.lpParameters = Wide(parameters);
  info.nShow = SW_SHOWNORMAL;
  if (!ShellExecuteExW(&info)) return false;
  if (wait && info.hProcess) {
    WaitForSingleObject(info.hProcess, INFINITE);
    CloseHandle(info.hProcess);
  }
  return true;
}

bool LcUSysFile::GetEnvironment(const char16_t* name, LcUString& out) {
  wchar_t value[32768];
  SetLastError(ERROR_SUCCESS);
  DWORD n = name ? GetEnvironmentVariableW(Wide(name), value, 32768) : 0;
  // An empty variable exists too.
  if (name && n == 0 && GetLastError() == ERROR_SUCCESS) {
    out.Assign(u"");
    return true;
  }
  return Take(value, n, 32768, out);
}

bool LcUSysFile::GetCurrentDirectory(LcUString& out) {
  wchar_t path[512];
  return Take(path, GetCurrentDirectoryW(512, path), 512, out);
}

bool LcUSysFile::GetExecutablePath(LcUString& out) {
  wchar_t path[1024];
  return Take(path, GetModuleFileNameW(nullptr, path, 1024), 1024, out);
}

// A module handle is its base address, so either kind of argument works.
bool LcUSysFile::GetModulePath(const void* address, LcUString& out) {
  HMODULE module = nullptr;
  if (address && !GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                         GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                                     static_cast<const wchar_t*>(address), &module)) {
    out.Clear();
    return false;
  }
  wchar_t path[MAX_PATH];
  return Take(path, GetModuleFileNameW(module, path, MAX_PATH), MAX_PATH, out);
}

bool LcUSysFile::GetSystemTempFolder(LcUString& out) {
  wchar_t path[MAX_PATH + 1];
  DWORD n = GetTempPathW(MAX_PATH + 1, path);
  if (n > 0 && n <= MAX_PATH && path[n - 1] == L'\\') --n;
  return Take(path, n, MAX_PATH + 1, out);
}

uint32_t LcUSysFile::GetProcessId() {
  return GetCurrentProcessId();
}
