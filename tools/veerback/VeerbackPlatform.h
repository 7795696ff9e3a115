#pragma once
#include <vector>

#include "foundation/LcUString.h"

// What the tool needs of its platform.
class VeerbackPlatform {
public:
  // The command line as UTF-16 arguments, program name first.
  static void GetArguments(int argc, char** argv, std::vector<LcUString>& arguments);
  // Checks the add-in's registration; prints one line per check and answers
  // whether all passed.
  static bool CheckRegistration();
  // Whether a file can be made in folder.
  static bool IsFolderWritable(const char16_t* folder);
};
