#pragma once
#include <cfloat>

#include "geometry/LcLPoint.h"

// An axis-aligned box of 2 or 3 dimensions. It starts empty (min x > max x),
// so that a union with anything gives that thing.
template <int N>
class LcLBox {
public:
  static constexpr int eCORNERS = 1 << N;

  LcLBox() {
    for (int i = 0; i < N; ++i) {
      min[i] = DBL_MAX;
      max[i] = -DBL_MAX;
    }
  }
  LcLBox(const LcLPoint<N>& min, const LcLPoint<N>& max) : min(min), max(max) {}

  bool IsEmpty() const { return min.x > max.x; }

  void Extend(const LcLPoint<N>& p) {
    for (int i = 0; i < N; ++i) {
      if (p[i] < min[i]) min[i] = p[i];
      if (p[i] > max[i]) max[i] = p[i];
    }
  }
  void Extend(const LcLBox& b) {
    if (b.IsEmpty()) return;
    Extend(b.min);
    Extend(b.max);
  }

  LcLPoint<N> Center() const {
    LcLPoint<N> c;
    for (int i = 0; i < N; ++i) c[i] = (min[i] + max[i]) * 0.5;
    return c;
  }
  LcLVector<N> Size() const { return max - min; }

  // Corner i takes max on axis k when bit k of i is set.
  LcLPoint<N> Corner(int i) const {
    LcLPoint<N> c;
    for (int k = 0; k < N; ++k) c[k] = (i >> k) & 1 ? max[k] : min[k];
    return c;
  }
  LcLPoint<N> min;
  LcLPoint<N> max;
};

using LcLBox2f = LcLBox<2>;
using LcLBox3f = LcLBox<3>;
