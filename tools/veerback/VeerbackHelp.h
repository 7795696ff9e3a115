#pragma once

// The tool's help: the overview, and each command's own text.
class VeerbackHelp {
public:
  static const char* const kOverview;
  // The command's text, or null when there is no such command.
  static const char* Find(const char* command);
};
