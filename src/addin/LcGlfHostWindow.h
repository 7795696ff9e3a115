#pragma once
#include <cstdint>

// The host's main window as its object model gives it: a 32-bit handle.
class LcGlfHostWindow {
public:
  // SetForegroundWindow, result ignored. A Linux host has no window to raise.
  static void BringToFront(int32_t window);
};
