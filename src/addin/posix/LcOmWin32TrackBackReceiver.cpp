#include "addin/LcOmWin32TrackBackReceiver.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/posix/LcOmTrackBackSocket.h"
#include "environment/LcUResource.h"

namespace {
LcOmWin32TrackBackReceiver* current = nullptr;
sockaddr_un boundAddress;
}  // namespace

LcOmWin32TrackBackReceiver::LcOmWin32TrackBackReceiver() {
  messageId = LcOmTrackBackSocket::RegisterMessage(LcOmTrackBackChannel::kMessageName);
  LcOmTrackBackChannel::GetRecordPath(LcUResource::GetSearchDir(LcUResource::eDIR_USER_APP_SHARED).Get(),
                                      recordPath);
  // As with a window that can't be made, a socket that can't be bound leaves
  // a receiver that never hears anything.
  listener = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  socklen_t length = 0;
  if (listener >= 0 && LcOmTrackBackSocket::GetAddress(LcOmTrackBackChannel::kWindowTitle, boundAddress, length)) {
    unlink(boundAddress.sun_path);  // a listener that died leaves its name behind
    if (bind(listener, reinterpret_cast<const sockaddr*>(&boundAddress), length) != 0) boundAddress.sun_path[0] = 0;
  } else {
    boundAddress.sun_path[0] = 0;
  }
  current = this;
}

LcOmWin32TrackBackReceiver::~LcOmWin32TrackBackReceiver() {
  if (boundAddress.sun_path[0]) unlink(boundAddress.sun_path);
  if (listener >= 0) close(listener);
  current = nullptr;
}

LcOmWin32TrackBackReceiver* LcOmWin32TrackBackReceiver::GetCurrent() {
  return current;
}

void LcOmWin32TrackBackReceiver::DispatchPending() {
  while (current && current->listener >= 0) {
    uint32_t message = 0;
    sockaddr_un sender;
    socklen_t senderLength = sizeof(sender);
    ssize_t n = recvfrom(current->listener, &message, sizeof(message), 0, reinterpret_cast<sockaddr*>(&sender),
                         &senderLength);
    if (n < 0) break;
    if (n != sizeof(message) || message != current->messageId) continue;
    int listener = current->listener;
    current->Receive();
    // As a sent window message returns to its sender once handled.
    if (senderLength > sizeof(sa_family_t))
      sendto(listener, &message, sizeof(message), MSG_DONTWAIT, reinterpret_cast<const sockaddr*>(&sender),
             senderLength);
  }
}

int LcOmWin32TrackBackReceiver::GetDescriptor() {
  return current ? current->listener : -1;
}
