#include <windows.h>
#include <shlobj.h>

#include "addin/LcOmTrackBackChannel.h"
#include "addin/LcOmTrackBackSender.h"
#include "environment/LcUSysFile.h"

LcOmTrackBackSender::Result LcOmTrackBackSender::Deliver(int timeoutMs) {
  HWND listener = FindWindowA(nullptr, LcOmTrackBackChannel::kWindowTitle);
  if (!listener) return eNO_LISTENER;
  UINT message = RegisterWindowMessageA(LcOmTrackBackChannel::kMessageName);
  DWORD_PTR answer = 0;
  // Returns once the listener's thread has run its window procedure.
  if (!SendMessageTimeoutA(listener, message, 0, 0, SMTO_ABORTIFHUNG, UINT(timeoutMs), &answer))
    return GetLastError() == ERROR_TIMEOUT ? eTIMED_OUT : eNO_LISTENER;
  return eTAKEN;
}

bool LcOmTrackBackSender::IsListenerRunning() {
  return FindWindowA(nullptr, LcOmTrackBackChannel::kWindowTitle) != nullptr;
}

bool LcOmTrackBackSender::EnsureFolderOf(const char16_t* path) {
  LcUString folder(path);
  int32_t cut = folder.Length();
  while (cut > 0 && !LcUSysFile::IsSeparator(folder[cut - 1])) --cut;
  if (cut <= 1) return true;
  folder.SetLength(cut - 1);
  int result = SHCreateDirectoryExW(nullptr, reinterpret_cast<const wchar_t*>(folder.Get()), nullptr);
  return result == ERROR_SUCCESS || result == ERROR_ALREADY_EXISTS || result == ERROR_FILE_EXISTS;
}

void LcOmTrackBackSender::ToPlatformForm(LcUString&) {}
