// veerback: the viewer's side of the TrackBack channel. See VeerbackHelp.cpp
// for the commands and their exit codes.
#include <cstdio>
#include <string>
#include <vector>

#include "VeerbackCommands.h"
#include "VeerbackHelp.h"
#include "VeerbackPlatform.h"

namespace {
std::string Utf8(const char16_t* text) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(text, narrow, true);
  return narrow.Get();
}

int BadInput(const std::string& message) {
  std::fprintf(stderr, "veerback: %s (see veerback --help)\n", message.c_str());
  return VeerbackCommands::eBAD_INPUT;
}

int Help(const std::string& command) {
  const char* text = command.empty() ? VeerbackHelp::kOverview : VeerbackHelp::Find(command.c_str());
  if (!text) return BadInput("no command \"" + command + "\"");
  std::fputs(text, stdout);
  return VeerbackCommands::eOK;
}

// For the commands taking a fixed number of plain arguments: what is wrong
// with these, or empty.
std::string CheckPlain(const std::string& command, const std::vector<const char16_t*>& rest, size_t count) {
  for (const char16_t* argument : rest)
    if (argument[0] == '-') return command + ": unknown option " + Utf8(argument);
  if (rest.size() > count) return command + ": stray argument \"" + Utf8(rest[count]) + "\"";
  if (rest.size() < count) return command + " needs a MODULE";
  return std::string();
}
}  // namespace

int main(int argc, char** argv) {
  std::vector<LcUString> arguments;
  VeerbackPlatform::GetArguments(argc, argv, arguments);
  if (arguments.size() < 2) {
    std::fputs(VeerbackHelp::kOverview, stderr);
    return VeerbackCommands::eBAD_INPUT;
  }
  std::string command = Utf8(arguments[1].Get());
  std::vector<const char16_t*> rest;
  for (size_t i = 2; i < arguments.size(); ++i) rest.push_back(arguments[i].Get());
  if (command == "--help" || command == "-h") return Help("");
  if (command == "--version") {
    std::puts("veerback " TW_VERSION);
    return VeerbackCommands::eOK;
  }
  if (command == "help") {
    if (rest.size() > 1) return BadInput("help: stray argument \"" + Utf8(rest[1]) + "\"");
    return Help(rest.empty() ? "" : Utf8(rest[0]));
  }
  if (!VeerbackHelp::Find(command.c_str()))
    return BadInput(command[0] == '-' ? "unknown option " + command : "unknown command \"" + command + "\"");
  for (const char16_t* argument : rest) {
    std::string text = Utf8(argument);
    if (text == "--help" || text == "-h") return Help(command);
  }
  if (command == "send") return VeerbackCommands::Send(rest);
  if (command == "inspect") return VeerbackCommands::Inspect(rest);
  std::string error = CheckPlain(command, rest, command == "doctor" ? 0 : 1);
  if (!error.empty()) return BadInput(error);
  if (command == "doctor") return VeerbackCommands::Doctor();
  return VeerbackCommands::Register(rest[0], command == "register");
}
