#pragma once
#include "geometry/LcLMatrix3.h"
#include "geometry/LcLVector.h"

class LcUString;

// A rotation as a unit quaternion (x, y, z, w). Rotations compose like their
// matrices: a × b turns by a, then by b.
class LcLRotation {
public:
  constexpr LcLRotation() : x(0.0), y(0.0), z(0.0), w(1.0) {}
  constexpr LcLRotation(double x, double y, double z, double w) : x(x), y(y), z(z), w(w) {}
  // Right-handed turn by angle radians about axis, which need not be unit.
  LcLRotation(const LcLVector3f& axis, double angle);
  // The shortest turn taking unit vector from onto unit vector to.
  static LcLRotation Between(const LcLVector3f& from, const LcLVector3f& to);
  // Turns about the fixed z axis by z, then about y by y, then about x by x,
  // in radians.
  static LcLRotation FromEuler(double x, double y, double z);
  // The rotation part of an orthonormal matrix; m44 is the homogeneous
  // scale of a 4 x 4 source, 1 otherwise.
  static LcLRotation FromMatrix(const LcLMatrix3& matrix, double m44 = 1.0);

  // Hamilton product, renormalised every time so rounding doesn't build up.
  LcLRotation operator*(const LcLRotation& b) const;

  // Assumes a unit quaternion.
  LcLMatrix3 GetMatrix() const;
  LcLVector3f Rotate(const LcLVector3f& v) const { return GetMatrix().Transform(v); }

  // Axis (0, 0, 1) and angle 0 when the vector part is too short to tell.
  void GetAxisAngle(LcLVector3f& axis, double& angle) const;
  // The angles FromEuler takes; near the poles the x angle is 0. Always true.
  bool GetEuler(double& ex, double& ey, double& ez) const;

  void Normalise();
  // Each of the four components differs by at most the tolerance.
  bool Equals(const LcLRotation& o, double tolerance) const;
  bool operator==(const LcLRotation& o) const { return x == o.x && y == o.y && z == o.z && w == o.w; }
  bool operator!=(const LcLRotation& o) const { return !(*this == o); }

  // Euler angles in degrees, "(%.4f, %.4f, %.4f)".
  bool GetText(LcUString& text) const;

  double x, y, z, w;
};
