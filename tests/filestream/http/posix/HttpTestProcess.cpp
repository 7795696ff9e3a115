#include "../HttpTestProcess.h"

#include <spawn.h>
#include <unistd.h>

extern char** environ;

bool HttpTestProcess::Start(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  return posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) == 0;
}

std::string HttpTestProcess::LocalPath(const std::string& linuxPath) { return linuxPath; }

int HttpTestProcess::ProcessId() { return int(getpid()); }
