// veerback: the viewer's side of the TrackBack channel.
//   veerback send --document PATH [--item-file PATH | --item TEXT] [camera options]
//   veerback inspect FILE
//   veerback doctor
//   veerback register|unregister MODULE
#include <cstdio>
#include <cstring>
#include <vector>

#include "VeerbackCommands.h"
#include "VeerbackPlatform.h"

namespace {
void Usage() {
  std::fputs(
      "usage:\n"
      "  veerback send --document PATH [--item-file PATH | --item TEXT]\n"
      "                [--ortho] [--position X,Y,Z] [--rotation X,Y,Z,W] [--aspect A]\n"
      "                [--height H] [--near N] [--far F] [--vertical-offset V]\n"
      "                [--horizontal-offset H] [--scale X,Y,Z] [--offset X,Y,Z]\n"
      "  veerback inspect FILE\n"
      "  veerback doctor\n"
      "  veerback register MODULE      # or unregister: the add-in's class in the registry\n",
      stderr);
}
}  // namespace

int main(int argc, char** argv) {
  std::vector<LcUString> arguments;
  VeerbackPlatform::GetArguments(argc, argv, arguments);
  if (arguments.size() < 2) {
    Usage();
    return 1;
  }
  const char16_t* command = arguments[1].Get();
  std::vector<const char16_t*> rest;
  for (size_t i = 2; i < arguments.size(); ++i) rest.push_back(arguments[i].Get());
  if (LcUString::Equal(command, u"send")) return VeerbackCommands::Send(rest);
  if (LcUString::Equal(command, u"inspect") && rest.size() == 1) return VeerbackCommands::Inspect(rest[0]);
  if (LcUString::Equal(command, u"doctor") && rest.empty()) return VeerbackCommands::Doctor();
  if (LcUString::Equal(command, u"register") && rest.size() == 1) return VeerbackCommands::Register(rest[0], true);
  if (LcUString::Equal(command, u"unregister") && rest.size() == 1) return VeerbackCommands::Register(rest[0], false);
  Usage();
  return 1;
}
