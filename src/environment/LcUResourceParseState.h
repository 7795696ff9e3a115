#pragma once
#include <cstdint>

#include "foundation/LcUStringA.h"

// Carried through the name table reader: where it is and what went wrong.
struct LcUResourceParseState {
  int32_t line = 1;
  int32_t utf8 = 0;  // 0: the legacy multi-byte code page
  int32_t errorLine = 0;
  LcUStringA errorText;  // null while there is no error
};
