#include "filestream/LcUURL.h"

const char16_t LcUURL::kEncodedSet[12] = u" \"<>{}|^[]`";

namespace {
const char16_t kHex[] = u"0123456789ABCDEF";

void Escape(char16_t unit, char16_t (&form)[4]) {
  form[0] = '%';
  form[1] = kHex[(unit >> 4) & 15];
  form[2] = kHex[unit & 15];
  form[3] = 0;
}
}  // namespace

void LcUURL::Encode(const char16_t* text, LcUString& out) {
  out.Assign(text);
  for (int32_t i = 0; kEncodedSet[i]; ++i) {
    char16_t from[2] = {kEncodedSet[i], 0};
    char16_t to[4];
    Escape(kEncodedSet[i], to);
    out.Replace(from, to, 0, true);
  }
}

void LcUURL::Decode(const char16_t* text, bool backslashToSlash, LcUString& out) {
  out.Assign(text);
  // Most texts hold no "%" at all; skip the eleven scans for them.
  if (out.FindChar('%') >= 0) {
    for (int32_t i = 0; kEncodedSet[i]; ++i) {
      char16_t from[4];
      Escape(kEncodedSet[i], from);
      char16_t to[2] = {kEncodedSet[i], 0};
      out.Replace(from, to, 0, true);
    }
  }
  if (backslashToSlash) out.Replace(u"\\", u"/", 0, true);
}
