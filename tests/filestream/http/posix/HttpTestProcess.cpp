#include "../HttpTestProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

extern char** environ;

bool HttpTestProcess::Start(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  pid_t pid = 0;
  return posix_spawnp(&pid, argv[0], nullptr, nullptr, argv.data(), environ) == 0;
}

int HttpTestProcess::Run(const std::vector<std::string>& arguments, const std::string& output,
                         const std::string& errors) {
  std::vector<char*> argv;
  for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  posix_spawn_file_actions_addopen(&actions, 2, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  pid_t pid = 0;
  int started = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (started != 0) return -1;
  // Far above any run the tests make: a hang fails rather than stalls.
  auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  int status = 0;
  pid_t done = 0;
  while ((done = waitpid(pid, &status, WNOHANG)) == 0 && std::chrono::steady_clock::now() < limit)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  if (done == 0) {
    kill(pid, SIGKILL);
    waitpid(pid, &status, 0);
    return -1;
  }
  return done == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string HttpTestProcess::LocalPath(const std::string& linuxPath) { return linuxPath; }

int HttpTestProcess::ProcessId() { return int(getpid()); }
