// UTF-8 decoding of arbitrary bytes, bounded and terminated, and the strict
// multibyte conversion: never out of bounds, and valid text survives the way back.
#include <cstdlib>
#include <cstring>
#include <string>

#include "foundation/LcUString.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  std::string text(reinterpret_cast<const char*>(data), size);

  LcUString bounded;
  LcUString::UTF8ToUTF16(text.data(), int32_t(size), bounded);
  if (bounded.Length() > int32_t(size)) std::abort();

  // Up to the first NUL the two entry points must see the same text.
  const char* terminated = text.c_str();
  LcUString wide;
  bool valid = LcUString::UTF8ToUTF16(terminated, -1, wide);

  if (valid) {
    // Valid text survives the way back and forth unit for unit (encoded
    // surrogates may come back as one four-byte sequence).
    LcUStringA back;
    LcUString::UTF16ToUTF8(wide.Get(), back, true);
    LcUString again;
    if (!LcUString::UTF8ToUTF16(back.Get(), -1, again) || !(again == wide)) std::abort();
  }

  LcUString strict;
  if (LcUString::MultiByteToWide(terminated, strict, 65001) && !valid) std::abort();
  return 0;
}
