#include "geometry/LcLMatrix4.h"

#include "geometry/LcLLUDecomposition.h"
#include "geometry/LcLMatrix.h"
#include "geometry/LcLWarning.h"

LcLMatrix4 LcLMatrix4::Perspective(double l, double r, double b, double t, double n, double f) {
  // The inverse of the frustum projection: w carries 1 / depth.
  return LcLMatrix4({{(r - l) / (2.0 * n), 0.0, 0.0, 0.0},
                     {0.0, (t - b) / (2.0 * n), 0.0, 0.0},
                     {0.0, 0.0, 0.0, -(f - n) / (2.0 * f * n)},
                     {(r + l) / (2.0 * n), (t + b) / (2.0 * n), -1.0, (f + n) / (2.0 * f * n)}});
}

LcLMatrix4 LcLMatrix4::Orthographic(double l, double r, double b, double t, double n, double f) {
  return LcLMatrix4({{(r - l) * 0.5, 0.0, 0.0, 0.0},
                     {0.0, (t - b) * 0.5, 0.0, 0.0},
                     {0.0, 0.0, -(f - n) * 0.5, 0.0},
                     {(r + l) * 0.5, (t + b) * 0.5, -(f + n) * 0.5, 1.0}});
}

double LcLMatrix4::Determinant() const {
  // Laplace expansion by the 2 x 2 minors of the first two and last two rows.
  double s0 = m[0][0] * m[1][1] - m[1][0] * m[0][1];
  double s1 = m[0][0] * m[1][2] - m[1][0] * m[0][2];
  double s2 = m[0][0] * m[1][3] - m[1][0] * m[0][3];
  double s3 = m[0][1] * m[1][2] - m[1][1] * m[0][2];
  double s4 = m[0][1] * m[1][3] - m[1][1] * m[0][3];
  double s5 = m[0][2] * m[1][3] - m[1][2] * m[0][3];
  double c5 = m[2][2] * m[3][3] - m[3][2] * m[2][3];
  double c4 = m[2][1] * m[3][3] - m[3][1] * m[2][3];
  double c3 = m[2][1] * m[3][2] - m[3][1] * m[2][2];
  double c2 = m[2][0] * m[3][3] - m[3][0] * m[2][3];
  double c1 = m[2][0] * m[3][2] - m[3][0] * m[2][2];
  double c0 = m[2][0] * m[3][1] - m[3][0] * m[2][1];
  return s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0;
}

bool LcLMatrix4::GetInverse(LcLMatrix4& inverse) const {
  if (IsIdentity()) {
    inverse = LcLMatrix4();
    return true;
  }
  if (IsAffine() && LcLMatrix3::GetDirectInverse(m, inverse.m)) {
    // The new translation is -t × L^-1. The old t is still intact here, even
    // when inverse is this matrix.
    const double(&linear)[4][4] = inverse.m;
    double t[3];
    for (int c = 0; c < 3; ++c) t[c] = -(m[3][0] * linear[0][c] + m[3][1] * linear[1][c] + m[3][2] * linear[2][c]);
    for (int c = 0; c < 3; ++c) {
      inverse.m[c][3] = 0.0;
      inverse.m[3][c] = t[c];
    }
    inverse.m[3][3] = 1.0;
    return true;
  }
  if (LcLLUDecomposition<4>::Invert(m, inverse.m)) return true;
  LcLWarning::Post(&LcLMatrix::component, 3, this, "Singular Matrix");
  inverse = LcLMatrix4();
  return false;
}
