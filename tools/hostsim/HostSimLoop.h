#pragma once
#include <cstdint>

class HostSimAddIn;

// The host's main window and the message loop of its one thread, where
// the add-in's TrackBack messages are handled. On Windows the thread is
// also the host's COM apartment.
class HostSimLoop {
public:
  HostSimLoop();
  HostSimLoop(const HostSimLoop&) = delete;
  HostSimLoop& operator=(const HostSimLoop&) = delete;
  ~HostSimLoop();

  bool IsReady() const { return ready; }
  int32_t MainWindow() const { return mainWindow; }
  // Waits up to timeoutMs for work and handles all of it; false once the
  // process has been asked to stop (an interrupt, a termination request).
  bool Wait(const HostSimAddIn& addin, int timeoutMs);

private:
  bool ready = false;
  int32_t mainWindow = 0;
  void* window = nullptr;
};
