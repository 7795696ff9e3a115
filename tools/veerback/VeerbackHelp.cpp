#include "VeerbackHelp.h"

#include <cstring>

const char* const VeerbackHelp::kOverview =
    "veerback: the viewer's side of the TrackBack channel into Gearloft\n"
    "usage: veerback COMMAND [OPTIONS]\n"
    "  send        write a record and deliver it to the listening add-in\n"
    "  inspect     decode a record file\n"
    "  doctor      check the registration, the record folder and the listener\n"
    "  register    register the add-in module (unregister undoes it)\n"
    "  help [COMMAND], --help, --version\n"
    "exit codes: 0 done, 1 bad input, 2 no listener, 3 channel busy, 4 not taken in time,\n"
    "            5 record not written, 6 a check or a server function failed\n";

namespace {
struct Entry {
  const char* command;
  const char* text;
};

const Entry kCommands[] = {
    {"send",
     "usage: veerback send --document PATH [--item-file PATH | --item TEXT] [camera options] [--timeout SECONDS]\n"
     "Writes the record, and with --item the item file beside it, then delivers the message, all under\n"
     "the channel's lock so that senders don't overwrite each other; waits until the host has handled it.\n"
     "  --document PATH        the host document to bring up (at most 260 characters)\n"
     "  --item-file PATH       a text file whose first line is the occurrence path; made absolute\n"
     "  --item TEXT            the occurrence path (Shaft:1|Gear:1), written to the item file\n"
     "  --ortho                orthographic (needs --height); perspective without it\n"
     "  --position X,Y,Z       the eye (default 0,0,1)\n"
     "  --rotation X,Y,Z,W     the orientation quaternion, not all zero (default 0,0,0,1)\n"
     "  --height H             the field of view in radians, or with --ortho the view's height; above 0\n"
     "  --aspect A             width over height, above 0 (default 1); used with --ortho only\n"
     "  --near N --far F       the clip distances, N below F (default 1 and 10)\n"
     "  --timeout SECONDS      how long to wait for the channel and for the host (default 30)\n"
     "The host uses the projection, position, rotation, height, near and far, and the aspect when\n"
     "orthographic. These travel in the record unused: --vertical-offset V, --horizontal-offset H,\n"
     "--scale X,Y,Z, --offset X,Y,Z.\n"
     "exit codes: 0 taken, 1 bad input, 2 no listener, 3 another sender held the channel,\n"
     "            4 the host didn't take it in time, 5 the record or item file couldn't be written\n"},
    {"inspect",
     "usage: veerback inspect [--json] FILE\n"
     "Decodes a record file of 1728 bytes; --json prints it as one JSON object.\n"
     "exit codes: 0 a whole record, 1 no such file, a folder, or not 1728 bytes, or a text without its end\n"},
    {"doctor",
     "usage: veerback doctor\n"
     "Checks the add-in's registration, the record folder and that a listener is running. A record\n"
     "folder that doesn't exist yet is fine: the first send makes it. Each failure says what to do.\n"
     "exit codes: 0 all good, 2 only the listener is missing, 6 the registration or the folder is wrong\n"},
    {"register",
     "usage: veerback register MODULE\n"
     "Loads the add-in module (a path as typed, relative to the current folder) and calls its\n"
     "DllRegisterServer; veerback unregister MODULE calls DllUnregisterServer.\n"
     "exit codes: 0 done, 1 no such file or not a module with server functions, 6 the function failed\n"},
};
}  // namespace

const char* VeerbackHelp::Find(const char* command) {
  if (std::strcmp(command, "unregister") == 0) command = "register";
  for (const Entry& e : kCommands)
    if (std::strcmp(command, e.command) == 0) return e.text;
  return nullptr;
}
