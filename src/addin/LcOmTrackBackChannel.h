#pragma once
#include "foundation/LcUString.h"

// The names both ends of the TrackBack channel agree on.
class LcOmTrackBackChannel {
public:
  // The registered message, and the start of every listener's title.
  static constexpr const char* kMessageName = "TarnWicket:LcOmWin32TrackBack:";
  static constexpr const char* kPluginName = "LcGlfPlugin";
  static constexpr const char* kWindowTitle = "TarnWicket:LcOmWin32TrackBack:LcGlfPlugin";

  // The shared folder, then "trackback", then "LcGlfPlugin" (no extension).
  static void GetRecordPath(const char16_t* sharedFolder, LcUString& path);
  // Roaming application data joined with the session's product line (its
  // default before a session starts); false when the
  // shell folder can't be had.
  static bool GetDefaultSharedFolder(LcUString& folder);
};
