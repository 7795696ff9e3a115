#pragma once
#include <vector>

// The commands; each answers the process's exit code.
class VeerbackCommands {
public:
  enum {
    eOK = 0,
    eBAD_INPUT = 1,     // the command line, or a file or module that can't be used
    eNO_LISTENER = 2,   // no host is listening
    eBUSY = 3,          // another sender held the channel for the whole timeout
    eTIMED_OUT = 4,     // the host didn't take the message in time
    eWRITE_FAILED = 5,  // the record or the item file couldn't be written
    eFAILED = 6,        // a check failed, or the module's server function did
  };

  static int Send(const std::vector<const char16_t*>& arguments);
  static int Inspect(const std::vector<const char16_t*>& arguments);
  static int Doctor();
  // Calls the module's DllRegisterServer, or DllUnregisterServer.
  static int Register(const char16_t* module, bool install);
  // Prints one line per check and answers whether all passed.
  static bool CheckRegistration();
};
