// A Linux host has no window messages: its loop polls the listener's
// descriptor and lets the add-in handle what arrived, on the loop's thread.
#include "addin/LcOmWin32TrackBackReceiver.h"
#include "addin/dll/TWVeerbackGlfExports.h"

TW_EXPORT int TWVeerbackGlfListenerDescriptor() {
  return LcOmWin32TrackBackReceiver::GetDescriptor();
}

TW_EXPORT void TWVeerbackGlfDispatchPending() {
  LcOmWin32TrackBackReceiver::DispatchPending();
}
