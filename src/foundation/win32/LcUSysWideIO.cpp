#include "foundation/LcUSysWideIO.h"

#include <cwchar>

bool LcUSysWideIO::ReadLine(FILE* stream, char16_t* buffer, int32_t limit) {
  return std::fgetws(reinterpret_cast<wchar_t*>(buffer), limit, stream) != nullptr;
}
