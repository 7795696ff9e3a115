#pragma once
#include <string>

#include "addin/LcGlfCom.h"

// Text as the simulated host reads and writes it: model files and the
// journal are UTF-8, the host's strings UTF-16.
class HostSimText {
public:
  // Bad UTF-8 becomes U+FFFD and answers false.
  static bool FromUtf8(const std::string& text, std::u16string& wide);
  // Unpaired surrogates come out as U+FFFD.
  static std::string ToUtf8(const std::u16string& text);
  // In double quotes, with \" for a quote, \n \r \t \xHH for control
  // characters and \uHHHH for unpaired surrogates, so a value stays on its
  // line. Backslashes stand as they are: paths read as paths.
  static std::string Quote(const char16_t* text, size_t length);
  static std::string Number(double value, int digits = 17);
  static std::string Hex(HRESULT value);
  // {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}
  static bool ReadGuid(const std::string& text, GUID& guid);
  static bool EqualNoCase(const std::u16string& a, const std::u16string& b);
};
