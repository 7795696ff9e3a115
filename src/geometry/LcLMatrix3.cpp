#include "geometry/LcLMatrix3.h"

#include <cmath>

#include "geometry/LcLLUDecomposition.h"
#include "geometry/LcLMatrix.h"
#include "geometry/LcLWarning.h"

double LcLMatrix3::Determinant() const {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

bool LcLMatrix3::GetDirectInverse(LcLMatrix3& inverse) const {
  // The determinant's six products, expanded along the first row and summed
  // by sign apart, show how much of it survives rounding. Branch-free, as
  // the signs of random data would defeat prediction.
  double t[6] = {m[1][1] * m[2][2], -m[1][2] * m[2][1], m[1][2] * m[2][0],
                 -m[1][0] * m[2][2], m[1][0] * m[2][1], -m[1][1] * m[2][0]};
  double positive = 0.0;
  double negative = 0.0;
#pragma GCC unroll 6
  for (int i = 0; i < 6; ++i) {
    double p = m[0][i / 2] * t[i];
    double share = (p + std::fabs(p)) * 0.5;  // p when positive, else 0
    positive += share;
    negative += p - share;
  }
  double det = positive + negative;
  if (!(std::fabs(det) >= 1e-15 * (positive - negative)) || det == 0.0) return false;
  double f = 1.0 / det;
  // All of the adjugate before any store: inverse may be this matrix.
  double a[3][3] = {{t[0] + t[1], m[0][2] * m[2][1] - m[0][1] * m[2][2], m[0][1] * m[1][2] - m[0][2] * m[1][1]},
                    {t[2] + t[3], m[0][0] * m[2][2] - m[0][2] * m[2][0], m[0][2] * m[1][0] - m[0][0] * m[1][2]},
                    {t[4] + t[5], m[0][1] * m[2][0] - m[0][0] * m[2][1], m[0][0] * m[1][1] - m[0][1] * m[1][0]}};
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) inverse.m[r][c] = a[r][c] * f;
  }
  return true;
}

bool LcLMatrix3::GetInverse(LcLMatrix3& inverse) const {
  if (IsIdentity()) {
    inverse = LcLMatrix3();
    return true;
  }
  if (GetDirectInverse(inverse)) return true;
  LcLLUDecomposition<3> lu;
  if (lu.Decompose(m)) {
    lu.Invert(inverse.m);
    return true;
  }
  LcLWarning::Post(&LcLMatrix::component, 2, this, "Singular Matrix");
  inverse = LcLMatrix3();
  return false;
}
