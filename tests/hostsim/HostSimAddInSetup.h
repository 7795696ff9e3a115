#pragma once
#include <string>
#include <vector>

// Makes the real add-in findable by hostsim the platform's way for the
// life of the object: registered with regsvr32 on Windows, with
// "veerback register" into a private registry store on Linux.
class HostSimAddInSetup {
public:
  HostSimAddInSetup();
  ~HostSimAddInSetup();
  bool IsReady() const { return ready; }
  // What hostsim is given to find it.
  std::vector<std::string> Arguments() const;
  // What makes hostsim look for an add-in that isn't there.
  static std::vector<std::string> MissingAddIn();

private:
  bool ready = false;
};
