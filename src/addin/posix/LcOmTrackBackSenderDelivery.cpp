#include <errno.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/LcOmTrackBackSender.h"
#include "addin/posix/LcOmTrackBackSocket.h"
#include "environment/posix/LcUSysPath.h"

LcOmTrackBackSender::Result LcOmTrackBackSender::Deliver() {
  sockaddr_un address;
  socklen_t length = 0;
  if (!LcOmTrackBackSocket::GetAddress(LcOmTrackBackChannel::kWindowTitle, address, length)) return eNO_LISTENER;
  int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return eNO_LISTENER;
  uint32_t message = LcOmTrackBackSocket::RegisterMessage(LcOmTrackBackChannel::kMessageName);
  // A bound socket with no reader still takes the datagram: it waits in the
  // queue for the host's loop, which is as far as delivery goes here.
  ssize_t sent = sendto(fd, &message, sizeof(message), 0, reinterpret_cast<const sockaddr*>(&address), length);
  close(fd);
  return sent == ssize_t(sizeof(message)) ? eTAKEN : eNO_LISTENER;
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
