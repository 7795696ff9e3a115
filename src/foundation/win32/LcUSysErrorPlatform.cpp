#include "foundation/LcUSysErrorPlatform.h"

#include <windows.h>

#include <share.h>

#include "foundation/LcUSysError.h"

void LcUSysErrorPlatform::OpenConsole(const char16_t* title) {
  // Fails harmlessly when the process has a console already.
  AllocConsole();
  SetConsoleTitleW(reinterpret_cast<const wchar_t*>(title));
}

void LcUSysErrorPlatform::ConsoleWrite(const char* text, uint32_t length) {
  HANDLE out = GetStdHandle(STD_OUTPUT_HANDLE);
  DWORD written = 0;
  // Redirected output is no console, and WriteConsoleA refuses it.
  if (!WriteConsoleA(out, text, length, &written, nullptr)) WriteFile(out, text, length, &written, nullptr);
}

FILE* LcUSysErrorPlatform::OpenLogFile(const char16_t* path) {
  return _wfsopen(reinterpret_cast<const wchar_t*>(path), L"wt", _SH_DENYNO);
}

int32_t LcUSysErrorPlatform::ExecutableName(char16_t* target, int32_t capacity) {
  DWORD n = GetModuleFileNameW(nullptr, reinterpret_cast<wchar_t*>(target), DWORD(capacity));
  return n < DWORD(capacity) ? int32_t(n) : 0;
}

uint32_t LcUSysErrorPlatform::ProcessId() {
  return GetCurrentProcessId();
}

uint64_t LcUSysErrorPlatform::TickCount() {
  return GetTickCount64();
}

void LcUSysErrorPlatform::BreakIfDebugged() {
  if (IsDebuggerPresent()) DebugBreak();
}

void LcUSysErrorPlatform::Terminate(int code) {
  TerminateProcess(GetCurrentProcess(), UINT(code));
  // Not reached; ExitProcess tells the compiler so.
  ExitProcess(UINT(code));
}

uint32_t LcUSysError::CurrentThreadId() {
  return GetCurrentThreadId();
}
