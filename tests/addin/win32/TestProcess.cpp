#include "TestProcess.h"

#include <windows.h>

#include <cstdlib>

namespace {
std::wstring Widen(const std::string& text) {
  int n = MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, nullptr, 0);
  std::wstring wide(size_t(n > 0 ? n - 1 : 0), L'\0');
  if (n > 1) MultiByteToWideChar(CP_UTF8, 0, text.c_str(), -1, &wide[0], n);
  return wide;
}
}  // namespace

int TestProcess::Run(const std::string& program, const std::vector<std::string>& arguments, void (*pump)(),
                     const std::string& output) {
  std::wstring command = L"\"" + Widen(program) + L"\"";
  for (const std::string& a : arguments) command += L" \"" + Widen(a) + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  HANDLE files[2] = {INVALID_HANDLE_VALUE, INVALID_HANDLE_VALUE};
  if (!output.empty()) {
    files[0] = CreateFileW(Widen(output + ".out").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    files[1] = CreateFileW(Widen(output + ".err").c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = files[0];
    startup.hStdError = files[1];
  }
  PROCESS_INFORMATION info = {};
  BOOL started = CreateProcessW(nullptr, &command[0], nullptr, nullptr, !output.empty(), 0, nullptr, nullptr,
                                &startup, &info);
  for (HANDLE file : files)
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  if (!started) return -1;
  // Sent messages are handled while this thread pumps.
  while (MsgWaitForMultipleObjects(1, &info.hProcess, FALSE, 5, QS_ALLINPUT) != WAIT_OBJECT_0)
    if (pump) pump();
  if (pump) pump();
  DWORD code = 0;
  GetExitCodeProcess(info.hProcess, &code);
  CloseHandle(info.hProcess);
  CloseHandle(info.hThread);
  return int(code);
}

std::string TestProcess::NativePath(const std::string& buildPath) {
  // Wine shows the Linux root as drive Z:.
  std::string path = "Z:" + buildPath;
  for (char& c : path)
    if (c == '/') c = '\\';
  return path;
}

std::string TestProcess::MakeTempFolder(const char* name) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  std::wstring folder = std::wstring(temp) + L"twtest-" + std::to_wstring(GetCurrentProcessId()) + L"-" + Widen(name);
  bool made = CreateDirectoryW(folder.c_str(), nullptr) != 0;
  int n = WideCharToMultiByte(CP_UTF8, 0, folder.c_str(), -1, nullptr, 0, nullptr, nullptr);
  std::string narrow(size_t(n - 1), '\0');
  WideCharToMultiByte(CP_UTF8, 0, folder.c_str(), -1, &narrow[0], n, nullptr, nullptr);
  if (made) RemoveAtExit(narrow);
  return narrow;
}

void TestProcess::SetEnvironment(const char* name, const std::string& value) {
  SetEnvironmentVariableW(Widen(name).c_str(), Widen(value).c_str());
  _putenv_s(name, value.c_str());
}
