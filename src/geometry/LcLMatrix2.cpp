#include "geometry/LcLMatrix2.h"

#include <cmath>

#include "geometry/LcLMatrix.h"
#include "geometry/LcLWarning.h"

bool LcLMatrix2::GetInverse(LcLMatrix2& inverse) const {
  double det = Determinant();
  if (!(std::fabs(det) >= 1e-12)) {
    LcLWarning::Post(&LcLMatrix::component, 1, this, "Singular Matrix");
    inverse = LcLMatrix2();
    return false;
  }
  double f = 1.0 / det;
  inverse = LcLMatrix2({{m[1][1] * f, -m[0][1] * f}, {-m[1][0] * f, m[0][0] * f}});
  return true;
}

bool LcLMatrix2::Solve(const LcLVector2f& rhs, LcLVector2f& x) const {
  // x0 m00 + x1 m10 = r0, x0 m01 + x1 m11 = r1
  double det = Determinant();
  if (det == 0.0) return false;
  x = LcLVector2f((rhs.x * m[1][1] - rhs.y * m[1][0]) / det, (m[0][0] * rhs.y - m[0][1] * rhs.x) / det);
  return true;
}
