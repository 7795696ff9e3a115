#pragma once
#include <vector>

// The commands; each answers the process's exit code.
class VeerbackCommands {
public:
  enum { eOK = 0, eFAILED = 1, eNO_LISTENER = 2 };

  static int Send(const std::vector<const char16_t*>& options);
  static int Inspect(const char16_t* path);
  static int Doctor();
  // Calls the module's DllRegisterServer, or DllUnregisterServer.
  static int Register(const char16_t* module, bool install);
  // Prints one line per check and answers whether all passed.
  static bool CheckRegistration();
};
