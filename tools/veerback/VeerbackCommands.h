#pragma once
#include <vector>

// The three commands; each answers the process's exit code.
class VeerbackCommands {
public:
  enum { eOK = 0, eFAILED = 1, eNO_LISTENER = 2 };

  static int Send(const std::vector<const char16_t*>& options);
  static int Inspect(const char16_t* path);
  static int Doctor();
};
