#include "HostSimLoop.h"

#include <windows.h>

#include <atomic>

namespace {
std::atomic<bool> stopAsked{false};

BOOL WINAPI OnConsoleEvent(DWORD) {
  stopAsked = true;
  return TRUE;
}
}  // namespace

HostSimLoop::HostSimLoop() {
  ready = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  HWND main = CreateWindowExW(0, L"STATIC", L"Gearloft (hostsim)", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                              800, 600, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  window = main;
  // Window handles carry 32 significant bits, which is how the host hands them out.
  mainWindow = int32_t(reinterpret_cast<intptr_t>(main));
  SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

HostSimLoop::~HostSimLoop() {
  SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
  if (window) DestroyWindow(static_cast<HWND>(window));
  if (ready) CoUninitialize();
}

bool HostSimLoop::Wait(const HostSimAddIn&, int timeoutMs) {
  // Messages sent from other processes are handled inside PeekMessageW.
  MsgWaitForMultipleObjectsEx(0, nullptr, DWORD(timeoutMs), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) stopAsked = true;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  return !stopAsked;
}
