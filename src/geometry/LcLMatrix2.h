#pragma once
#include "geometry/LcLSquareMatrix.h"
#include "geometry/LcLVector.h"

// 2 x 2 matrix by rows.
class LcLMatrix2 : public LcLSquareMatrix<LcLMatrix2, 2> {
public:
  using LcLSquareMatrix::LcLSquareMatrix;

  double Determinant() const { return m[0][0] * m[1][1] - m[0][1] * m[1][0]; }

  // v × M.
  LcLVector2f Transform(const LcLVector2f& v) const {
    return LcLVector2f(v.x * m[0][0] + v.y * m[1][0], v.x * m[0][1] + v.y * m[1][1]);
  }

  // Identity and the "Singular Matrix" warning (id 1) when |det| < 1e-12.
  bool GetInverse(LcLMatrix2& inverse) const;

  // Solves x × M = rhs by Cramer's rule; false only for a determinant of
  // exactly zero.
  bool Solve(const LcLVector2f& rhs, LcLVector2f& x) const;
};
