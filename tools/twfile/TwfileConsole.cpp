#include "TwfileConsole.h"

void TwfileConsole::Print(FILE* stream, const char16_t* text) {
  LcUStringA narrow;
  if (text && LcUString::UTF16ToUTF8(text, narrow, true) && narrow.Get()) std::fputs(narrow.Get(), stream);
}
