#pragma once
#include "geometry/LcLVector.h"

// A position of 2 or 3 components. Points differ by vectors and move by them.
template <int N>
class LcLPoint : public LcLTuple<N> {
public:
  using LcLTuple<N>::LcLTuple;

  LcLVector<N> operator-(const LcLPoint& b) const {
    LcLVector<N> r;
    for (int i = 0; i < N; ++i) r[i] = (*this)[i] - b[i];
    return r;
  }
  LcLPoint operator+(const LcLVector<N>& v) const {
    LcLPoint r;
    for (int i = 0; i < N; ++i) r[i] = (*this)[i] + v[i];
    return r;
  }
  LcLPoint operator-(const LcLVector<N>& v) const { return *this + -v; }
  LcLPoint& operator+=(const LcLVector<N>& v) { return *this = *this + v; }

  // The displacement from the origin.
  LcLVector<N> AsVector() const { return *this - LcLPoint(); }
};

using LcLPoint2f = LcLPoint<2>;
using LcLPoint3f = LcLPoint<3>;
