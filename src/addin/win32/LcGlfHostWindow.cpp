#include "addin/LcGlfHostWindow.h"

#include <windows.h>

void LcGlfHostWindow::BringToFront(int32_t window) {
  SetForegroundWindow(reinterpret_cast<HWND>(static_cast<intptr_t>(window)));
}
