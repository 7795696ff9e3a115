#pragma once
#include <string>
#include <vector>

#include "addin/LcGlfCom.h"
#include "foundation/LcUString.h"

// What the tool needs of its platform.
class VeerbackPlatform {
public:
  // The command line as UTF-16 arguments, program name first.
  static void GetArguments(int argc, char** argv, std::vector<LcUString>& arguments);
  enum Call { eCALLED, eNOT_LOADED, eNO_FUNCTION };
  // Loads module and calls its server function; when it can't be loaded,
  // error is the system's own text of why.
  static Call CallServerFunction(const char16_t* module, const char* function, HRESULT& result, std::string& error);
  // Whether a file can be made in folder.
  static bool IsFolderWritable(const char16_t* folder);
};
