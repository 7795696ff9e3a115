#pragma once
#include <string>

#include "HostSimModel.h"

// The model file: plain UTF-8 text, one statement a line, words separated
// by blanks, a word with blanks in double quotes (no escapes), "#" starting
// a comment line.
//
//   document PATH part|assembly [open]   starts a document; what follows is its
//   designview NAME                      the file service's design view name
//   lod NAME                             the file service's level-of-detail name
//   view                                 adds a view; the camera lines are its
//   eye X Y Z | target X Y Z | up X Y Z
//   perspective -1|0 | angle RADIANS | extents WIDTH HEIGHT
//   occurrence NAME|NAME|...             an occurrence, its parents declared before
//   active PATH                          the active document (default: the first open one)
//   modeflag -1|0                        the application's mode flag (default -1)
//   fail RULE                            as hostsim's --fail
class HostSimModelReader {
public:
  // false with "line N: what" in error.
  static bool Read(const std::string& text, HostSimModel& model, std::string& error);
  // As Read, the error starting with the file's path.
  static bool ReadFile(const std::string& path, HostSimModel& model, std::string& error);
};
