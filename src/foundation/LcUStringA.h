#pragma once
#include "foundation/LcUStringBase.h"

// Narrow string: bytes in the ANSI code page or UTF-8, as the caller knows.
class LcUStringA : public LcUStringBase<char> {
public:
  using LcUStringBase::LcUStringBase;
  using LcUStringBase::operator=;
  using LcUStringBase::Trim;

  // With asciiWhiteSpace, white space is exactly 9 to 13 and 32, whatever the locale.
  void Trim(bool asciiWhiteSpace);
};
