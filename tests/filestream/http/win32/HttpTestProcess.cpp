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
  CloseHandle(info.hThread);
  CloseHandle(info.hProcess);
  return true;
}

std::string HttpTestProcess::LocalPath(const std::string& linuxPath) {
  std::string path = "Z:" + linuxPath;
  for (char& c : path)
    if (c == '/') c = '\\';
  return path;
}

int HttpTestProcess::ProcessId() { return int(GetCurrentProcessId()); }
