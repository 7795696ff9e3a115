#pragma once
#include <cstddef>
#include <cstdint>

// Numbers of JSON text, in the "C" locale whatever the process's locale.
class LcUJsonNumber {
public:
  enum : int32_t { ePRINT_SIZE = 25 };

  // Reads a number as the C library's "%lg" scan reads it: an optional
  // minus, decimal or "0x" hexadecimal digits with fraction and exponent,
  // "inf", "infinity" or "nan". An exponent mark without digits is taken
  // and adds nothing. Returns the bytes taken, 0 when nothing matched.
  static size_t Scan(const char* text, double& value);

  // "%.17g"; returns the length.
  static int32_t Print(double value, char (&text)[ePRINT_SIZE]);
  // At least the length that Print gives; exact for whole numbers.
  static int32_t PrintedSizeBound(double value);
};
