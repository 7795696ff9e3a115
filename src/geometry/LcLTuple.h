#pragma once
#include <cmath>

#include "geometry/LcLTupleFields.h"

class LcUString;

// What points and vectors share: indexing, comparison and the text form.
template <int N>
class LcLTuple : public LcLTupleFields<N> {
public:
  using LcLTupleFields<N>::LcLTupleFields;

  double operator[](int i) const { return this->*LcLTupleFields<N>::fields[i]; }
  double& operator[](int i) { return this->*LcLTupleFields<N>::fields[i]; }

  // Each component differs by at most the tolerance.
  bool Equals(const LcLTuple& other, double tolerance) const {
    for (int i = 0; i < N; ++i) {
      if (!(std::fabs((*this)[i] - other[i]) <= tolerance)) return false;
    }
    return true;
  }
  bool operator==(const LcLTuple& other) const {
    for (int i = 0; i < N; ++i) {
      if ((*this)[i] != other[i]) return false;
    }
    return true;
  }
  bool operator!=(const LcLTuple& other) const { return !(*this == other); }

  // "(%.16f, %.16f, %.16f)"; false when the text could not be stored.
  bool GetText(LcUString& text) const;
};
