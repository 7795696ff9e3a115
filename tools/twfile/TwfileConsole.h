#pragma once
#include <cstdio>
#include <vector>

#include "foundation/LcUString.h"

// What the tool needs of the platform's console.
class TwfileConsole {
public:
  // The command line as UTF-16 texts, the program's name first.
  static void GetArguments(int argc, char** argv, std::vector<LcUString>& out);
  static bool IsTerminal(FILE* stream);
  // Bytes go out as they are, with no line-end translation.
  static void SetBinary(FILE* stream);
  // A path as the platform's users write it.
  static void ToDisplayPath(LcUString& path);
  // Prints text as UTF-8.
  static void Print(FILE* stream, const char16_t* text);
};
