#pragma once
#include <string>

class HostSim;

// The host's state in a short readable form: how many TrackBack messages it
// handled, the active document and view, the mode flag, each open
// document's cameras and selection, and the references that callers hold
// or gave back once too often. Numbers have 10 significant digits; the
// journal has them exactly.
class HostSimState {
public:
  static std::string Text(const HostSim& host);
  // The message under way in one line: its number, the active document,
  // whether the camera was applied, what is selected there, and the first
  // host call that failed, so a pick that did nothing shows why.
  static std::string Message(const HostSim& host);
  // Replaces the file whole, so that a reader never sees half a state.
  static bool WriteFile(const HostSim& host, const std::string& path);
};
