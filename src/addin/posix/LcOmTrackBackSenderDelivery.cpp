#include <errno.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/LcOmTrackBackSender.h"
#include "addin/posix/LcOmTrackBackSocket.h"
#include "environment/posix/LcUSysPath.h"

LcOmTrackBackSender::Result LcOmTrackBackSender::Deliver(int timeoutMs) {
  sockaddr_un address;
  socklen_t length = 0;
  if (!LcOmTrackBackSocket::GetAddress(LcOmTrackBackChannel::kWindowTitle, address, length)) return eNO_LISTENER;
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return eNO_LISTENER;
  // An address of our own (autobound) lets the listener answer once the
  // message has been handled, as SendMessage returns then.
  sa_family_t family = AF_UNIX;
  bool bound = bind(fd, reinterpret_cast<const sockaddr*>(&family), sizeof(family)) == 0;
  uint32_t message = LcOmTrackBackSocket::RegisterMessage(LcOmTrackBackChannel::kMessageName);
  Result result = eNO_LISTENER;
  if (bound && sendto(fd, &message, sizeof(message), 0, reinterpret_cast<const sockaddr*>(&address), length) ==
                   ssize_t(sizeof(message))) {
    pollfd answer = {fd, POLLIN, 0};
    uint32_t reply = 0;
    if (poll(&answer, 1, timeoutMs) != 1)
      result = eTIMED_OUT;
    else if (recv(fd, &reply, sizeof(reply), 0) == ssize_t(sizeof(reply)) && reply == message)
      result = eTAKEN;
  }
  close(fd);
  return result;
}

bool LcOmTrackBackSender::IsListenerRunning() {
  sockaddr_un address;
  socklen_t length = 0;
  if (!LcOmTrackBackSocket::GetAddress(LcOmTrackBackChannel::kWindowTitle, address, length)) return false;
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  bool running = connect(fd, reinterpret_cast<const sockaddr*>(&address), length) == 0;
  close(fd);
  return running;
}

bool LcOmTrackBackSender::EnsureFolderOf(const char16_t* path) {
  LcUStringA native;
  if (!LcUSysPath::ToNative(path, native)) return false;
  char* p = native.GetBuffer();
  int32_t last = native.Length();
  while (last > 0 && p[last - 1] != '/') --last;
  if (last <= 1) return true;
  p[last - 1] = 0;
  // Each missing folder on the way, as SHCreateDirectoryExW makes them.
  for (char* q = p + 1;; ++q) {
    if (*q == '/' || *q == 0) {
      char saved = *q;
      *q = 0;
      if (mkdir(p, 0777) != 0 && errno != EEXIST) return false;
      *q = saved;
      if (!saved) break;
    }
  }
  return true;
}

// The file layer turns either separator into '/' at the system call; users
// get the path that call sees.
void LcOmTrackBackSender::ToPlatformForm(LcUString& path) {
  path.Replace(u"\\", u"/", 0, true);
}
