#include "addin/LcOmWin32TrackBackReceiver.h"

#include <windows.h>

#include "addin/LcOmTrackBackChannel.h"
#include "environment/LcUResource.h"

namespace {
LcOmWin32TrackBackReceiver* current = nullptr;

LRESULT CALLBACK TrackBackWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (current && message == current->GetMessageId()) current->Receive();
  return DefWindowProcW(window, message, wParam, lParam);
}

// The module that holds this code: the add-in DLL, or a program linking it.
HINSTANCE OwnModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&TrackBackWindowProc), &module);
  return module;
}
}  // namespace

LcOmWin32TrackBackReceiver::LcOmWin32TrackBackReceiver() {
  messageId = RegisterWindowMessageA(LcOmTrackBackChannel::kMessageName);
  LcOmTrackBackChannel::GetRecordPath(LcUResource::GetSearchDir(LcUResource::eDIR_USER_APP_SHARED).Get(),
                                      recordPath);
  listener = CreateWindowExA(0, "static", LcOmTrackBackChannel::kWindowTitle, WS_POPUP, 0, 0, 1, 1, nullptr,
                             nullptr, OwnModule(), nullptr);
  // Every message goes to our procedure and on to DefWindowProcW, not to "static".
  SetWindowLongPtrW(listener, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TrackBackWindowProc));
  current = this;
}

LcOmWin32TrackBackReceiver::~LcOmWin32TrackBackReceiver() {
  DestroyWindow(listener);
  current = nullptr;
}

LcOmWin32TrackBackReceiver* LcOmWin32TrackBackReceiver::GetCurrent() {
  return current;
}

void LcOmWin32TrackBackReceiver::DispatchPending() {
  // Sent messages reach the window procedure from inside PeekMessageW.
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

int LcOmWin32TrackBackReceiver::GetDescriptor() {
  return -1;
}
