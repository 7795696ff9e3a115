#include "foundation/LcUUtf8.h"

namespace {
struct UTF16Writer {
  char16_t* out;
  void PutAscii(const unsigned char* s, int64_t n) {
    int64_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    for (; i + 16 <= n; i += 16) {
      __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_unpacklo_epi8(v, zero));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i + 8), _mm_unpackhi_epi8(v, zero));
    }
#endif
    for (; i < n; ++i) out[i] = s[i];
    out += n;
  }
  void Put(uint32_t cp) {
    if (cp < 0x10000) {
      *out++ = char16_t(cp);
    } else {
      cp -= 0x10000;
      *out++ = char16_t(0xD800 + (cp >> 10));
      *out++ = char16_t(0xDC00 + (cp & 0x3FF));
    }
  }
};

// Length of the run of units below 0x80 at the start of s.
int64_t AsciiUnits(const char16_t* s, int64_t length) {
  int64_t i = 0;
#if defined(__SSE2__)
  const __m128i high = _mm_set1_epi16(short(0xFF80));
  const __m128i zero = _mm_setzero_si128();
  for (; i + 8 <= length; i += 8) {
    __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(v, high), zero)) != 0xFFFF) break;
  }
#endif
  while (i < length && s[i] < 0x80) ++i;
  return i;
}

void NarrowAscii(const char16_t* s, int64_t n, char* out) {
  int64_t i = 0;
#if defined(__SSE2__)
  for (; i + 16 <= n; i += 16) {
    __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
    __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), _mm_packus_epi16(a, b));
  }
#endif
  for (; i < n; ++i) out[i] = char(s[i]);
}
}  // namespace

int64_t LcUUtf8::DecodeToUTF16(const char* s, int64_t length, char16_t* out, bool& valid) {
  UTF16Writer writer{out};
  valid = Decode(reinterpret_cast<const unsigned char*>(s), length, writer);
  return writer.out - out;
}

int64_t LcUUtf8::EncodeFromUTF16(const char16_t* s, int64_t length, char* out, bool combineSurrogates,
                                 bool& unpaired) {
  char* o = out;
  unpaired = false;
  int64_t i = 0;
  while (i < length) {
    int64_t run = AsciiUnits(s + i, length - i);
    NarrowAscii(s + i, run, o);
    o += run;
    i += run;
    if (i >= length) break;
    uint32_t cp = s[i++];
    if (cp >= 0xD800 && cp <= 0xDFFF) {
      if (combineSurrogates && cp <= 0xDBFF && i < length && s[i] >= 0xDC00 && s[i] <= 0xDFFF) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (s[i++] - 0xDC00);
      } else {
        unpaired = true;
      }
    }
    if (cp < 0x800) {
      *o++ = char(0xC0 | (cp >> 6));
      *o++ = char(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
      *o++ = char(0xE0 | (cp >> 12));
      *o++ = char(0x80 | ((cp >> 6) & 0x3F));
      *o++ = char(0x80 | (cp & 0x3F));
    } else {
      *o++ = char(0xF0 | (cp >> 18));
      *o++ = char(0x80 | ((cp >> 12) & 0x3F));
      *o++ = char(0x80 | ((cp >> 6) & 0x3F));
      *o++ = char(0x80 | (cp & 0x3F));
    }
  }
  return o - out;
}
