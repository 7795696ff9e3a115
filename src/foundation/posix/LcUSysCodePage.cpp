#include "foundation/LcUSysCodePage.h"

#include <cstdlib>
#include <cstring>

#include "foundation/LcUUtf8.h"

namespace {
bool IsUTF8(uint32_t codePage) {
  return codePage == 0 || codePage == LcUSysCodePage::kUTF8;
}

// Strict decoding: no replacement and no encoded surrogates.
struct StrictUTF16 {
  char16_t* out;
  int64_t size;
  int64_t count = 0;
  bool bad = false;
  void Emit(char16_t u) {
    if (out && count < size) out[count] = u;
    ++count;
  }
  void PutAscii(const unsigned char* s, int64_t n) {
    for (int64_t i = 0; i < n; ++i) Emit(s[i]);
  }
  void Put(uint32_t cp) {
    if (cp >= 0xD800 && cp <= 0xDFFF) bad = true;
    if (cp < 0x10000) {
      Emit(char16_t(cp));
    } else {
      cp -= 0x10000;
      Emit(char16_t(0xD800 + (cp >> 10)));
      Emit(char16_t(0xDC00 + (cp & 0x3FF)));
    }
  }
};
}  // namespace

uint32_t LcUSysCodePage::GetACP() {
  return kUTF8;
}

int32_t LcUSysCodePage::WideToMultiByte(uint32_t codePage, const char16_t* source, int32_t count, char* target,
                                        int32_t targetSize) {
  if (!IsUTF8(codePage) || !source || count <= 0) return 0;
  char* bytes = static_cast<char*>(std::malloc(size_t(count) * 3));
  if (!bytes) return 0;
  bool unpaired = false;
  int64_t n = LcUUtf8::EncodeFromUTF16(source, count, bytes, true, unpaired);
  int32_t result = 0;
  if (!unpaired && (!target || n <= targetSize)) {
    if (target) std::memcpy(target, bytes, size_t(n));
    result = int32_t(n);
  }
  std::free(bytes);
  return result;
}

int32_t LcUSysCodePage::MultiByteToWide(uint32_t codePage, const char* source, int32_t count, char16_t* target,
                                        int32_t targetSize) {
  if (!IsUTF8(codePage) || !source || count <= 0) return 0;
  // The decoder stops at a NUL: refuse rather than cut the text short.
  for (int32_t i = 0; i < count; ++i)
    if (source[i] == 0) return 0;
  StrictUTF16 sink{target, target ? targetSize : 0};
  bool valid = LcUUtf8::Decode(reinterpret_cast<const unsigned char*>(source), count, sink);
  if (!valid || sink.bad || (target && sink.count > targetSize)) return 0;
  return int32_t(sink.count);
}
