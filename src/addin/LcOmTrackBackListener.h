#pragma once
// What a TrackBack receiver listens on: its hidden window on Windows, its
// datagram socket on Linux.
#if defined(_WIN32)
struct HWND__;
typedef HWND__* LcOmTrackBackListener;
#else
typedef int LcOmTrackBackListener;
#endif
