#pragma once
#include <string>
#include <vector>

#include "addin/LcGlfCom.h"

// hostsim's command line.
struct HostSimOptions {
  std::string model;
  std::string addin;
  bool haveClsid = false;
  CLSID clsid = {};
  std::string journal;
  bool state = false;
  bool verbose = false;
  std::string stateFile;
  std::vector<std::string> failures;
  long quitAfter = 0;
  std::string quitFile;
  double timeout = 0;
  bool help = false;

  // false with the reason, or with help set and no reason.
  static bool Parse(int argc, char** argv, HostSimOptions& options, std::string& error);
  static const char* const kUsage;
};
