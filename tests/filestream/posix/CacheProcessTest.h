#pragma once
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "CacheTesting.h"

// A second process: the engine starts afresh in a forked child while this
// one's is stopped, as a later run would. Not under ThreadSanitizer, which
// does not follow a fork.
class CacheProcessTest : public CacheTest {
protected:
  void SetUp() override {
    CacheTest::SetUp();
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "forks a process";
#endif
  }

  // The child's wait status; `watch` runs here meanwhile with the child's
  // id and the reading end of a pipe the child may write to.
  int RunChild(const std::function<int(int)>& body, const std::function<void(pid_t, int)>& watch = nullptr) {
    int channel[2];
    if (pipe(channel) != 0) return -1;
    StopEngine();
    pid_t pid = fork();
    if (pid == 0) {
      close(channel[0]);
      StartEngine();
      _exit(body(channel[1]));
    }
    close(channel[1]);
    if (watch && pid > 0) watch(pid, channel[0]);
    int status = -1;
    if (pid > 0) waitpid(pid, &status, 0);
    close(channel[0]);
    StartEngine();
    return status;
  }

  // Bytes from the pipe until `count` came or the bound passed.
  static int Await(int from, int count) {
    int got = 0;
    char byte;
    for (int waited = 0; got < count && waited < 200; ++waited) {
      pollfd ready = {from, POLLIN, 0};
      if (poll(&ready, 1, 100) == 1 && read(from, &byte, 1) == 1) ++got;
    }
    return got;
  }
};
