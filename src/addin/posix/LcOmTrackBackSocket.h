#pragma once
#include <sys/socket.h>
#include <sys/un.h>

#include <cstdint>

// The Linux stand-in for a registered message sent to a window found by its
// title: a datagram carrying the message number, sent to a socket named by
// the title in the user's runtime folder.
class LcOmTrackBackSocket {
public:
  // Like RegisterWindowMessageA: the same name gives the same number in
  // every process, in the range 0xC000 to 0xFFFF.
  static uint32_t RegisterMessage(const char* name);
  // The socket's address: $XDG_RUNTIME_DIR/<title>, or a private 0700 folder
  // of the user's under /tmp. False when no safe folder can be had.
  static bool GetAddress(const char* title, sockaddr_un& address, socklen_t& length);
};
