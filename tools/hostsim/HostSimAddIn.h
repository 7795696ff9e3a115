#pragma once
#include <string>

#include "HostSimOptions.h"
#include "addin/ITWVeerbackGlfServer.h"

// The add-in, found and created as Gearloft does it: on Windows from the
// registry through COM, on Linux from its shared library through
// DllGetClassObject.
class HostSimAddIn {
public:
  HostSimAddIn() = default;
  HostSimAddIn(const HostSimAddIn&) = delete;
  HostSimAddIn& operator=(const HostSimAddIn&) = delete;
  ~HostSimAddIn() { Unload(); }

  // false with the reason.
  bool Load(const HostSimOptions& options, std::string& error);
  ITWVeerbackGlfServer* Server() const { return server; }
  // What the add-in tells of itself: its module or its class.
  const std::string& Description() const { return description; }
  // A function the add-in module exports for its host; null where COM is
  // the only way in.
  void* Symbol(const char* name) const;
  // Releases the server and lets the module go.
  void Unload();

private:
  ITWVeerbackGlfServer* server = nullptr;
  void* module = nullptr;
  std::string description;
};
