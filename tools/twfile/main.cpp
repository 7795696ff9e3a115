// twfile: streamed files and their cache from the command line.
//   twfile info URL
//   twfile cat URL [--offset N] [--length N]
//   twfile get URL FILE
//   twfile cache list|evict|clear
// Options for every command: --no-cache, --cache-dir DIR, --max-cache MB, --trace.
#include <cstdio>

#include "TwfileCommands.h"
#include "TwfileConsole.h"
#include "TwfileSession.h"

namespace {
const char kUsage[] =
    "usage: twfile info URL\n"
    "       twfile cat URL [--offset N] [--length N]\n"
    "       twfile get URL FILE\n"
    "       twfile cache list|evict|clear\n"
    "options: --no-cache  --cache-dir DIR (the cache is DIR/LocalCache)  --max-cache MB  --trace\n"
    "exit codes: 0 done, 1 bad arguments, 2 failed, 3 unavailable now\n";

struct Command {
  const char16_t* name;
  size_t operands;
  TwfileOptions::Exit (*run)(TwfileSession&, const TwfileOptions&);
};
const Command kCommands[] = {
    {u"info", 1, &TwfileCommands::Info},
    {u"cat", 1, &TwfileCommands::Cat},
    {u"get", 2, &TwfileCommands::Get},
    {u"cache", 1, &TwfileCommands::Cache},
};

int BadArguments(const char16_t* why) {
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(why, narrow, true);
  std::fprintf(stderr, "twfile: %s\n%s", narrow.Get() ? narrow.Get() : "", kUsage);
  return TwfileOptions::eBAD_ARGUMENTS;
}
}  // namespace

int main(int argc, char** argv) {
  std::vector<LcUString> arguments;
  TwfileConsole::GetArguments(argc, argv, arguments);
  TwfileOptions options;
  LcUString error;
  if (!options.Parse(arguments, error)) return BadArguments(error.Get());
  if (LcUString::Equal(options.command.Get(), u"help")) {
    std::fputs(kUsage, stdout);
    return TwfileOptions::eDONE;
  }
  for (const Command& command : kCommands) {
    if (!LcUString::Equal(options.command.Get(), command.name)) continue;
    if (options.operands.size() != command.operands) {
      error.Format(u"%ls takes %d operand%ls", command.name, int(command.operands),
                   command.operands == 1 ? u"" : u"s");
      return BadArguments(error.Get());
    }
    if (command.run == &TwfileCommands::Cache && !LcUString::Equal(options.operands[0].Get(), u"list") &&
        !LcUString::Equal(options.operands[0].Get(), u"evict") && !LcUString::Equal(options.operands[0].Get(), u"clear"))
      return BadArguments(u"cache takes list, evict or clear");
    TwfileSession session(options);
    if (!session.Started()) return session.Fail(TwfileOptions::eFAILED, "cannot start the streamed-file components");
    return command.run(session, options);
  }
  error.Format(u"unknown command %ls", options.command.Get());
  return BadArguments(error.Get());
}
