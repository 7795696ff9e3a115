#pragma once
#include <cstring>

// Two doubles side by side in one SSE2 register, so that the matrix code can
// work on two entries at a time at the baseline instruction set. The
// compiler's generic vectors give the arithmetic operators, a scalar operand
// standing for both lanes, and lane access by index.
using LcLPair = double __attribute__((vector_size(16)));

// Any two adjacent entries: rows need not be aligned.
inline LcLPair LcLLoadPair(const double* p) {
  LcLPair v;
  std::memcpy(&v, p, sizeof v);
  return v;
}

inline void LcLStorePair(double* p, LcLPair v) { std::memcpy(p, &v, sizeof v); }

inline LcLPair LcLAbs(LcLPair v) {
  using Bits = long long __attribute__((vector_size(16)));
  constexpr Bits kMagnitude = {0x7fffffffffffffff, 0x7fffffffffffffff};  // all but the sign bits
  return reinterpret_cast<LcLPair>(reinterpret_cast<Bits>(v) & kMagnitude);
}
