#include "TestProcess.h"

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

extern char** environ;

int TestProcess::Run(const std::string& program, const std::vector<std::string>& arguments, void (*pump)()) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0) return -1;
  int status = 0;
  while (waitpid(pid, &status, WNOHANG) == 0) {
    if (pump) pump();
    usleep(2000);
  }
  if (pump) pump();
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string TestProcess::NativePath(const std::string& buildPath) {
  return buildPath;
}

std::string TestProcess::MakeTempFolder(const char* name) {
  std::string folder = "/tmp/twtest-" + std::to_string(getpid()) + "-" + name;
  std::string command = "rm -rf '" + folder + "'";
  if (std::system(command.c_str()) != 0) return folder;
  if (mkdir(folder.c_str(), 0700) == 0) RemoveAtExit(folder);
  return folder;
}

void TestProcess::SetEnvironment(const char* name, const std::string& value) {
  setenv(name, value.c_str(), 1);
}
