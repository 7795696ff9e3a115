#include "../HttpTestProcess.h"

#include <windows.h>

bool HttpTestProcess::Start(const std::vector<std::string>& arguments) {
  // Wine runs a Linux program named by its Linux path.
  std::string command;
  for (const std::string& a : arguments) command += (command.empty() ? "\"" : " \"") + a + "\"";
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION info = {};
  if (!CreateProcessA(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info))
    return false;
  // A Linux program runs outside Wine's process table: no process handle
  // comes back, and hThread then holds a stale value that may name one of
  // this process's own handles, such as a worker thread's.
  if (info.hProcess) {
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
  }
  return true;
}

int HttpTestProcess::Run(const std::vector<std::string>& arguments, const std::string& output,
                         const std::string& errors) {
  std::string command;
  for (const std::string& a : arguments) command += (command.empty() ? "\"" : " \"") + a + "\"";
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  HANDLE out = CreateFileA(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS, 0, nullptr);
  HANDLE err = CreateFileA(errors.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS, 0, nullptr);
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = out;
  startup.hStdError = err;
  PROCESS_INFORMATION info = {};
  BOOL started = CreateProcessA(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &info);
  CloseHandle(out);
  CloseHandle(err);
  if (!started) return -1;
  // Far above any run the tests make: a hang fails rather than stalls.
  DWORD code = DWORD(-1);
  if (WaitForSingleObject(info.hProcess, 120000) != WAIT_OBJECT_0) TerminateProcess(info.hProcess, code);
  WaitForSingleObject(info.hProcess, 10000);
  GetExitCodeProcess(info.hProcess, &code);
  CloseHandle(info.hProcess);
  CloseHandle(info.hThread);
  return int(code);
}

std::string HttpTestProcess::LocalPath(const std::string& linuxPath) {
  std::string path = "Z:" + linuxPath;
  for (char& c : path)
    if (c == '/') c = '\\';
  return path;
}

int HttpTestProcess::ProcessId() { return int(GetCurrentProcessId()); }
