#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUString.h"

// The command line, parsed: a command, its operands and the options.
struct TwfileOptions {
  enum Exit { eDONE = 0, eBAD_ARGUMENTS = 1, eFAILED = 2, eUNAVAILABLE = 3 };

  LcUString command;
  std::vector<LcUString> operands;
  bool noCache = false;
  bool trace = false;
  LcUString cacheDir;
  int64_t maxCacheMB = -1;
  int64_t offset = 0;
  int64_t length = -1;

  // False, with the reason in error, for anything the tool doesn't take.
  bool Parse(const std::vector<LcUString>& arguments, LcUString& error);
};
