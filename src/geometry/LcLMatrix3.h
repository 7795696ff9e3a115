#pragma once
#include <cmath>

#include "geometry/LcLPair.h"
#include "geometry/LcLSquareMatrix.h"
#include "geometry/LcLVector.h"

// 3 x 3 matrix by rows: the linear part of a transform.
class LcLMatrix3 : public LcLSquareMatrix<LcLMatrix3, 3> {
public:
  using LcLSquareMatrix::LcLSquareMatrix;

  double Determinant() const;

  // v × M.
  LcLVector3f Transform(const LcLVector3f& v) const {
    return LcLVector3f(v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0],
                       v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1],
                       v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2]);
  }

  // The direct inverse by the adjugate, else LU; when both fail, identity
  // and the "Singular Matrix" warning (id 2).
  bool GetInverse(LcLMatrix3& inverse) const {
    if (IsIdentity()) {
      inverse = LcLMatrix3();
      return true;
    }
    return GetDirectInverse(inverse) || GetInverseByLU(inverse);
  }

  // The adjugate over the determinant. False, leaving the output alone, when
  // the determinant's positive and negative products cancel to within 1e-15.
  bool GetDirectInverse(LcLMatrix3& inverse) const { return GetDirectInverse(m, inverse.m); }
  // The same for the upper-left 3 x 3 of m, into the same place of inverse:
  // the linear part of a 4 x 4 is read in place rather than copied out.
  template <int N>
  static bool GetDirectInverse(const double (&m)[N][N], double (&inverse)[N][N]);

private:
  // The rest of GetInverse, kept out of line with its warning.
  bool GetInverseByLU(LcLMatrix3& inverse) const;

  // p when positive, else 0, lane by lane. Not a max: p beyond half the
  // largest double must overflow, which sends its matrix on to LU.
  static LcLPair PositivePart(LcLPair p) { return (p + LcLAbs(p)) * 0.5; }
};

template <int N>
inline bool LcLMatrix3::GetDirectInverse(const double (&m)[N][N], double (&inverse)[N][N]) {
  // Products of adjacent entries of two rows give two entries of the
  // adjugate at once: rows 2 and 0 of its columns, and the rest one by one.
  LcLPair m00m01 = LcLLoadPair(m[0]), m01m02 = LcLLoadPair(m[0] + 1);
  LcLPair m10m11 = LcLLoadPair(m[1]), m11m12 = LcLLoadPair(m[1] + 1);
  LcLPair m20m21 = LcLLoadPair(m[2]), m21m22 = LcLLoadPair(m[2] + 1);
  LcLPair plus0 = m10m11 * m21m22;   // m10 m21, m11 m22
  LcLPair minus0 = m11m12 * m20m21;  // m11 m20, m12 m21
  LcLPair column0 = plus0 - minus0;
  LcLPair column1 = m20m21 * m01m02 - m21m22 * m00m01;
  LcLPair column2 = m00m01 * m11m12 - m01m02 * m10m11;
  double plus1 = m[1][2] * m[2][0];
  double minus1 = m[1][0] * m[2][2];
  double a10 = plus1 - minus1;
  double a11 = m[0][0] * m[2][2] - m[0][2] * m[2][0];
  double a12 = m[0][2] * m[1][0] - m[0][0] * m[1][2];

  // The determinant's six products, expanded along the first row and summed
  // by sign apart in their order, show how much of it survives rounding.
  // Branch-free, as the signs of random data would defeat prediction.
  LcLPair first = {m[0][2], m[0][0]};
  LcLPair p40 = first * plus0;
  LcLPair p51 = -(first * minus0);
  LcLPair p23 = {m[0][1] * plus1, -(m[0][1] * minus1)};
  LcLPair s40 = PositivePart(p40), s51 = PositivePart(p51), s23 = PositivePart(p23);
  LcLPair n40 = p40 - s40, n51 = p51 - s51, n23 = p23 - s23;
  // Lane 0 sums the positive parts, lane 1 the negative ones.
  LcLPair sums = {s40[1], n40[1]};
  sums += LcLPair{s51[1], n51[1]};
  sums += LcLPair{s23[0], n23[0]};
  sums += LcLPair{s23[1], n23[1]};
  sums += LcLPair{s40[0], n40[0]};
  sums += LcLPair{s51[0], n51[0]};
  double det = sums[0] + sums[1];
  if (!(std::fabs(det) >= 1e-15 * (sums[0] - sums[1])) || det == 0.0) return false;

  // Everything is read by now: inverse may be this matrix.
  double f = 1.0 / det;
  column0 *= f;
  column1 *= f;
  column2 *= f;
  LcLStorePair(inverse[0], LcLPair{column0[1], column1[1]});
  inverse[0][2] = column2[1];
  LcLStorePair(inverse[1], LcLPair{a10, a11} * f);
  inverse[1][2] = a12 * f;
  LcLStorePair(inverse[2], LcLPair{column0[0], column1[0]});
  inverse[2][2] = column2[0];
  return true;
}
