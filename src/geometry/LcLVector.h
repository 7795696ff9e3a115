#pragma once
#include <cmath>

#include "geometry/LcLTuple.h"

// A direction or displacement of 2 or 3 components.
template <int N>
class LcLVector : public LcLTuple<N> {
public:
  using LcLTuple<N>::LcLTuple;

  LcLVector operator+(const LcLVector& b) const { return Combine(b, 1.0); }
  LcLVector operator-(const LcLVector& b) const { return Combine(b, -1.0); }
  LcLVector operator-() const { return *this * -1.0; }
  LcLVector operator*(double s) const {
    LcLVector r;
    for (int i = 0; i < N; ++i) r[i] = (*this)[i] * s;
    return r;
  }
  LcLVector& operator+=(const LcLVector& b) { return *this = *this + b; }
  LcLVector& operator*=(double s) { return *this = *this * s; }

  double Dot(const LcLVector& b) const {
    double sum = 0.0;
    for (int i = 0; i < N; ++i) sum += (*this)[i] * b[i];
    return sum;
  }
  double Length() const { return std::sqrt(Dot(*this)); }

  LcLVector Cross(const LcLVector& b) const {
    static_assert(N == 3, "the cross product is three-dimensional");
    return LcLVector(this->y * b.z - this->z * b.y, this->z * b.x - this->x * b.z,
                     this->x * b.y - this->y * b.x);
  }

  // Makes the vector unit length and returns the old length; a zero vector
  // stays zero without complaint.
  double Normalise() {
    double length = Length();
    if (length != 0.0) *this *= 1.0 / length;
    return length;
  }
  LcLVector Normalised() const {
    LcLVector r = *this;
    r.Normalise();
    return r;
  }

private:
  LcLVector Combine(const LcLVector& b, double sign) const {
    LcLVector r;
    for (int i = 0; i < N; ++i) r[i] = (*this)[i] + sign * b[i];
    return r;
  }
};

using LcLVector2f = LcLVector<2>;
using LcLVector3f = LcLVector<3>;
