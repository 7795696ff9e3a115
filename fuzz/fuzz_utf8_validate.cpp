// IsValidUTF8 on arbitrary bytes answers as the decoder does.
#include <cstdlib>
#include <string>

#include "foundation/LcUString.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > (1u << 20)) return 0;
  std::string text(reinterpret_cast<const char*>(data), size);
  bool valid = LcUString::IsValidUTF8(text.c_str());
  LcUString decoded;
  if (valid != LcUString::UTF8ToUTF16(text.c_str(), -1, decoded)) std::abort();
  return 0;
}
