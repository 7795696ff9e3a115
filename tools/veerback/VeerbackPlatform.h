#pragma once
#include <vector>

#include "addin/LcGlfCom.h"
#include "foundation/LcUString.h"

// What the tool needs of its platform.
class VeerbackPlatform {
public:
  // The command line as UTF-16 arguments, program name first.
  static void GetArguments(int argc, char** argv, std::vector<LcUString>& arguments);
  // Loads module and calls its server function; false when either can't be had.
  static bool CallServerFunction(const char16_t* module, const char* function, HRESULT& result);
  // Whether a file can be made in folder.
  static bool IsFolderWritable(const char16_t* folder);
};
