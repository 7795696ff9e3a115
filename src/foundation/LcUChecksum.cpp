#include "foundation/LcUChecksum.h"

#include "foundation/LcUSysError.h"

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

LcUComponent LcUChecksum::component;

bool LcUChecksum::Initialize() {
  LcUSysError::RegisterComponent(&component, "LcUChecksum");
  return true;
}

void LcUChecksum::Terminate() {
  LcUSysError::UnregisterComponent(&component);
}

void LcUChecksum::Init() {
  a = 1;
  b = 0;
  countdown = eRUN;
}

void LcUChecksum::Reduce() {
  a %= eMODULUS;
  b %= eMODULUS;
  countdown = eRUN;
}

namespace {
// The sums over bytes p[0..n): a gains each byte, b gains a after each.
inline void AddBytes(const uint8_t* p, uint32_t n, uint32_t& a, uint32_t& b) {
  uint32_t sa = a, sb = b;
  uint32_t i = 0;
  for (; i + 4 <= n; i += 4) {
    sa += p[i];
    sb += sa;
    sa += p[i + 1];
    sb += sa;
    sa += p[i + 2];
    sb += sa;
    sa += p[i + 3];
    sb += sa;
  }
  for (; i < n; ++i) {
    sa += p[i];
    sb += sa;
  }
  a = sa;
  b = sb;
}

#if defined(__x86_64__) && defined(__GNUC__)
#define TW_CHECKSUM_AVX2 1
__attribute__((target("avx2"))) inline uint32_t LaneTotal(__m256i v) {
  __m128i x = _mm_add_epi32(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1));
  x = _mm_add_epi32(x, _mm_shuffle_epi32(x, 0x4E));
  x = _mm_add_epi32(x, _mm_shuffle_epi32(x, 0xB1));
  return uint32_t(_mm_cvtsi128_si32(x));
}

// 32 bytes a step: b gains 32 times every earlier step's byte sum, plus the
// step's bytes weighted 32 down to 1. The same sums as byte by byte, so the
// caller's run limit keeps them from overflowing.
__attribute__((target("avx2"))) void AddBytesAvx2(const uint8_t* p, uint32_t n, uint32_t& a, uint32_t& b) {
  const __m256i weights = _mm256_setr_epi8(32, 31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15,
                                           14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1);
  const __m256i ones = _mm256_set1_epi16(1);
  const __m256i zero = _mm256_setzero_si256();
  __m256i sums = zero, earlier = zero, weighted = zero, weighted2 = zero;
  uint32_t i = 0;
  // Two steps at a time, so that the chains of additions overlap.
  for (; i + 64 <= n; i += 64) {
    __m256i v0 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
    __m256i v1 = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i + 32));
    __m256i s0 = _mm256_sad_epu8(v0, zero);
    earlier = _mm256_add_epi32(earlier, _mm256_add_epi32(_mm256_slli_epi32(sums, 1), s0));
    sums = _mm256_add_epi32(sums, _mm256_add_epi32(s0, _mm256_sad_epu8(v1, zero)));
    weighted = _mm256_add_epi32(weighted, _mm256_madd_epi16(_mm256_maddubs_epi16(v0, weights), ones));
    weighted2 = _mm256_add_epi32(weighted2, _mm256_madd_epi16(_mm256_maddubs_epi16(v1, weights), ones));
  }
  if (i < n) {
    __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + i));
    earlier = _mm256_add_epi32(earlier, sums);
    sums = _mm256_add_epi32(sums, _mm256_sad_epu8(v, zero));
    weighted = _mm256_add_epi32(weighted, _mm256_madd_epi16(_mm256_maddubs_epi16(v, weights), ones));
  }
  weighted = _mm256_add_epi32(weighted, weighted2);
  b += n * a + 32 * LaneTotal(earlier) + LaneTotal(weighted);
  a += LaneTotal(sums);
}

bool HasAvx2() {
  static const bool has = __builtin_cpu_supports("avx2");
  return has;
}
#endif
}  // namespace

void LcUChecksum::Add(const void* bytes, uint32_t count) {
  const uint8_t* p = static_cast<const uint8_t*>(bytes);
  while (count > 0) {
    uint32_t run = count < uint32_t(countdown) ? count : uint32_t(countdown);
    uint32_t done = 0;
#ifdef TW_CHECKSUM_AVX2
    if (run >= 64 && HasAvx2()) {
      done = run & ~31u;
      AddBytesAvx2(p, done, a, b);
    }
#endif
    AddBytes(p + done, run - done, a, b);
    p += run;
    count -= run;
    countdown -= int32_t(run);
    if (countdown == 0) Reduce();
  }
}

uint32_t LcUChecksum::GetResult() {
  if (countdown != int32_t(eRUN)) Reduce();
  return b << 16 | a;
}

void LcUChecksum::AddString(const char* text) {
  static const char zero = 0;
  if (!text) return Add(&zero, 1);
  uint32_t n = 0;
  while (text[n]) ++n;
  Add(text, n);
}

void LcUChecksum::AddWideString(const char16_t* text) {
  static const char zero = 0;
  if (!text) return Add(&zero, 1);
  uint32_t n = 0;
  while (text[n]) ++n;
  Add(text, n * 2u);
}
