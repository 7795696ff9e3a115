#include "../TwfileConsole.h"

#include <unistd.h>

void TwfileConsole::GetArguments(int argc, char** argv, std::vector<LcUString>& out) {
  out.resize(size_t(argc));
  for (int i = 0; i < argc; ++i) LcUString::UTF8ToUTF16(argv[i], -1, out[size_t(i)]);
}

bool TwfileConsole::IsTerminal(FILE* stream) { return isatty(fileno(stream)) != 0; }

void TwfileConsole::SetBinary(FILE*) {}

void TwfileConsole::ToDisplayPath(LcUString& path) { path.Replace(u"\\", u"/", 0, true); }
