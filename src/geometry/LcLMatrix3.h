#pragma once
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
  bool GetInverse(LcLMatrix3& inverse) const;

  // The adjugate over the determinant. False, leaving the output alone, when
  // the determinant's positive and negative products cancel to within 1e-15.
  bool GetDirectInverse(LcLMatrix3& inverse) const;
};
