#include "TestProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

extern char** environ;

int TestProcess::Run(const std::string& program, const std::vector<std::string>& arguments, void (*pump)(),
                     const std::string& output) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  std::string out = output + ".out", err = output + ".err";
  if (!output.empty()) {
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  }
  pid_t pid = 0;
  int spawned = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (spawned != 0) return -1;
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
