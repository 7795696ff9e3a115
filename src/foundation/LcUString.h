#pragma once
#include "foundation/LcUComponent.h"
#include "foundation/LcUStringA.h"
#include "foundation/LcUStringBase.h"

// Wide string of UTF-16 units on every platform. The encoding conversions
// write their failure text into the target, so a failed conversion shows
// wherever the string is shown.
class LcUString : public LcUStringBase<char16_t> {
public:
  using LcUStringBase::LcUStringBase;
  using LcUStringBase::operator=;

  static bool Initialize();
  static void Terminate();
  static bool IsAvailable();
  static LcUComponent component;

  static bool AsciiToWide(const char* source, LcUString& target);
  static bool WideToAscii(const char16_t* source, LcUStringA& target);
  // Through the process's narrow code page (UTF-8 on Linux).
  static bool WideToMultiByte(const char16_t* source, LcUStringA& target);
  // codePage 0 means the process's narrow code page.
  static bool MultiByteToWide(const char* source, LcUString& target, uint32_t codePage = 0);
  static bool UTF16ToUTF8(const char16_t* source, LcUStringA& target, bool combineSurrogates);
  // length -1 means up to the terminator; a NUL byte always ends the scan.
  static bool UTF8ToUTF16(const char* source, int32_t length, LcUString& target);
  static bool IsValidUTF8(const char* text);
};
