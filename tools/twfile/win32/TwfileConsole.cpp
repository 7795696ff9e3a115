#include "../TwfileConsole.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

void TwfileConsole::GetArguments(int, char**, std::vector<LcUString>& out) {
  int count = 0;
  wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  out.resize(size_t(count > 0 ? count : 0));
  for (int i = 0; i < count; ++i) out[size_t(i)] = reinterpret_cast<const char16_t*>(arguments[i]);
  LocalFree(arguments);
}

bool TwfileConsole::IsTerminal(FILE* stream) { return _isatty(_fileno(stream)) != 0; }

void TwfileConsole::SetBinary(FILE* stream) { _setmode(_fileno(stream), _O_BINARY); }

void TwfileConsole::ToDisplayPath(LcUString&) {}
