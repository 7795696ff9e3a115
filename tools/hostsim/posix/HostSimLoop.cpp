#include "HostSimLoop.h"

#include <poll.h>
#include <signal.h>

#include "HostSimAddIn.h"

namespace {
// A Linux host has no window handles; the add-in only passes this one on.
constexpr int32_t kMainWindow = 0x10010;

volatile sig_atomic_t stopAsked = 0;

void OnSignal(int) {
  stopAsked = 1;
}
}  // namespace

HostSimLoop::HostSimLoop() {
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  ready = true;
  mainWindow = kMainWindow;
}

HostSimLoop::~HostSimLoop() {
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
}

bool HostSimLoop::Wait(const HostSimAddIn& addin, int timeoutMs) {
  // The add-in's listener is polled here and handled on this thread.
  auto descriptor = reinterpret_cast<int (*)()>(addin.Symbol("TWVeerbackGlfListenerDescriptor"));
  auto dispatchPending = reinterpret_cast<void (*)()>(addin.Symbol("TWVeerbackGlfDispatchPending"));
  pollfd listener = {descriptor ? descriptor() : -1, POLLIN, 0};
  if (poll(&listener, 1, timeoutMs) > 0 && (listener.revents & POLLIN) && dispatchPending) dispatchPending();
  return !stopAsked;
}
