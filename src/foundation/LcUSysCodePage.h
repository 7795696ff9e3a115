#pragma once
#include <cstdint>

// Conversion between UTF-16 and the process's narrow code page. Both fail
// (answer 0) on input the code page cannot take, as the strict flags of the
// Windows calls make them fail. On Linux the narrow code page is UTF-8.
class LcUSysCodePage {
public:
  static constexpr uint32_t kUTF8 = 65001;

  static uint32_t GetACP();
  // With a null target, answer the size needed. Counts exclude a terminator.
  static int32_t WideToMultiByte(uint32_t codePage, const char16_t* source, int32_t count, char* target,
                                 int32_t targetSize);
  static int32_t MultiByteToWide(uint32_t codePage, const char* source, int32_t count, char16_t* target,
                                 int32_t targetSize);
};
