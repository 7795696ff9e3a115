#include "geometry/LcLMatrix3.h"

#include "geometry/LcLLUDecomposition.h"
#include "geometry/LcLMatrix.h"
#include "geometry/LcLWarning.h"

double LcLMatrix3::Determinant() const {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

bool LcLMatrix3::GetInverseByLU(LcLMatrix3& inverse) const {
  if (LcLLUDecomposition<3>::Invert(m, inverse.m)) return true;
  LcLWarning::Post(&LcLMatrix::component, 2, this, "Singular Matrix");
  inverse = LcLMatrix3();
  return false;
}
