#pragma once
#include "geometry/LcLMatrix3.h"
#include "geometry/LcLPair.h"
#include "geometry/LcLPoint.h"
#include "geometry/LcLSquareMatrix.h"

// 4 x 4 matrix by rows. When affine, the translation is the fourth row and
// the fourth column is (0, 0, 0, 1).
class LcLMatrix4 : public LcLSquareMatrix<LcLMatrix4, 4> {
public:
  using LcLSquareMatrix::LcLSquareMatrix;
  LcLMatrix4(const LcLMatrix3& linear, const LcLVector3f& translation)
      : LcLSquareMatrix({{linear.m[0][0], linear.m[0][1], linear.m[0][2], 0.0},
                         {linear.m[1][0], linear.m[1][1], linear.m[1][2], 0.0},
                         {linear.m[2][0], linear.m[2][1], linear.m[2][2], 0.0},
                         {translation.x, translation.y, translation.z, 1.0}}) {}

  // The off-centre view volumes of a camera looking down -z, as maps from
  // normalised device coordinates (-1 to 1, z -1 at near) into eye space.
  static LcLMatrix4 Perspective(double left, double right, double bottom, double top, double nearDistance,
                                double farDistance);
  static LcLMatrix4 Orthographic(double left, double right, double bottom, double top, double nearDistance,
                                 double farDistance);

  bool IsAffine() const { return m[0][3] == 0.0 && m[1][3] == 0.0 && m[2][3] == 0.0 && m[3][3] == 1.0; }
  LcLMatrix3 Linear() const {
    return LcLMatrix3({{m[0][0], m[0][1], m[0][2]}, {m[1][0], m[1][1], m[1][2]}, {m[2][0], m[2][1], m[2][2]}});
  }
  LcLVector3f Translation() const { return LcLVector3f(m[3][0], m[3][1], m[3][2]); }

  double Determinant() const;

  // (p, 1) × M, divided by the resulting w.
  LcLPoint3f TransformPoint(const LcLPoint3f& p) const {
    // Two columns of the image at a time: x and y, then z and w.
    LcLPair xy = p.x * LcLLoadPair(m[0]) + p.y * LcLLoadPair(m[1]) + p.z * LcLLoadPair(m[2]) + LcLLoadPair(m[3]);
    LcLPair zw = p.x * LcLLoadPair(m[0] + 2) + p.y * LcLLoadPair(m[1] + 2) + p.z * LcLLoadPair(m[2] + 2) +
                 LcLLoadPair(m[3] + 2);
    // 1 / w in both lanes straight from the divider, with no broadcast after.
    LcLPair f = 1.0 / LcLPair{zw[1], zw[1]};
    xy *= f;
    return LcLPoint3f(xy[0], xy[1], zw[0] * f[0]);
  }
  // (v, 0) × M: the linear part alone.
  LcLVector3f TransformDirection(const LcLVector3f& v) const {
    return LcLVector3f(v.x * m[0][0] + v.y * m[1][0] + v.z * m[2][0], v.x * m[0][1] + v.y * m[1][1] + v.z * m[2][1],
                       v.x * m[0][2] + v.y * m[1][2] + v.z * m[2][2]);
  }

  // The affine inverse when the fourth column allows it, else LU; when both
  // fail, identity and the "Singular Matrix" warning (id 3).
  bool GetInverse(LcLMatrix4& inverse) const;
};
