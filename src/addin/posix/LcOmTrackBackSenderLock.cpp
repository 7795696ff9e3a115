#include "addin/LcOmTrackBackSenderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/posix/LcOmTrackBackSocket.h"

// A flock on a file beside the listener's socket: it goes with its open
// file, so two senders in one process exclude each other too.
LcOmTrackBackSenderLock::LcOmTrackBackSenderLock(int timeoutMs) {
  sockaddr_un address;
  socklen_t length = 0;
  if (!LcOmTrackBackSocket::GetAddress(LcOmTrackBackChannel::kWindowTitle, address, length)) return;
  std::string path = std::string(address.sun_path) + ".lock";
  int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) return;
  handle = fd;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (!(held = flock(fd, LOCK_EX | LOCK_NB) == 0) && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

LcOmTrackBackSenderLock::~LcOmTrackBackSenderLock() {
  if (handle >= 0) close(int(handle));
}
