#pragma once
#include <cstdint>
#include <cstring>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The UTF-8 codec under the string conversions. Decoding replaces each bad
// sequence with U+FFFD and reports false; the writers are sized by the
// caller for the worst case (one unit per byte, three bytes per unit).
class LcUUtf8 {
public:
  static constexpr char16_t kReplacement = 0xFFFD;

  // Decodes at most `length` bytes, stopping at a NUL. Sink: Put(uint32_t
  // codePoint) and PutAscii(bytes, count) for runs below 0x80.
  template <typename Sink>
  static bool Decode(const unsigned char* s, int64_t length, Sink& sink);

  // Writes UTF-16 units to `out`; returns the number of units, `valid` says
  // whether nothing was replaced. `out` must hold `length` units.
  static int64_t DecodeToUTF16(const char* s, int64_t length, char16_t* out, bool& valid);

  // Writes UTF-8 bytes to `out` (3 * length bytes suffice); returns the count.
  // With `combineSurrogates`, a high surrogate followed by a low one is one
  // code point; otherwise every unit stands for itself. `unpaired` tells
  // whether a surrogate was written on its own.
  static int64_t EncodeFromUTF16(const char16_t* s, int64_t length, char* out, bool combineSurrogates,
                                 bool& unpaired);

  // Length of the pure-ASCII run at the start of s, not beyond length or a NUL.
  static int64_t AsciiPrefix(const unsigned char* s, int64_t length);
};

template <typename Sink>
bool LcUUtf8::Decode(const unsigned char* s, int64_t length, Sink& sink) {
  bool valid = true;
  int64_t i = 0;
  while (i < length) {
    int64_t run = AsciiPrefix(s + i, length - i);
    if (run) sink.PutAscii(s + i, run);
    i += run;
    if (i >= length || s[i] == 0) break;
    unsigned lead = s[i];
    int count;
    uint32_t cp;
    if (lead >= 0xC0 && lead <= 0xDF) {
      count = 1;
      cp = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      count = 2;
      cp = lead & 0x0F;
    } else if (lead >= 0xF0 && lead <= 0xF7) {
      count = 3;
      cp = lead & 0x07;
    } else {
      sink.Put(kReplacement);
      valid = false;
      ++i;
      continue;
    }
    if (i + count >= length) {
      // Too few bytes left: the rest are taken on their own.
      sink.Put(kReplacement);
      valid = false;
      ++i;
      continue;
    }
    int k = 1;
    for (; k <= count; ++k) {
      unsigned c = s[i + k];
      if ((c & 0xC0) != 0x80) break;
      cp = (cp << 6) | (c & 0x3F);
    }
    if (k <= count) {
      // The offending byte is swallowed, unless it ends the text.
      sink.Put(kReplacement);
      valid = false;
      if (s[i + k] == 0) return false;
      i += k + 1;
      continue;
    }
    i += count + 1;
    static const uint32_t kMinimum[4] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[count] || cp > 0x10FFFF || cp == 0xFFFE || cp == 0xFFFF) {
      sink.Put(kReplacement);
      valid = false;
      continue;
    }
    sink.Put(cp);
  }
  return valid;
}

inline int64_t LcUUtf8::AsciiPrefix(const unsigned char* s, int64_t length) {
  int64_t i = 0;
#if defined(__SSE2__)
  const __m128i zero = _mm_setzero_si128();
  while (i + 16 <= length) {
    __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
    int stop = _mm_movemask_epi8(v) | _mm_movemask_epi8(_mm_cmpeq_epi8(v, zero));
    if (stop) return i + __builtin_ctz(unsigned(stop));
    i += 16;
  }
#endif
  while (i < length && s[i] != 0 && s[i] < 0x80) ++i;
  return i;
}
