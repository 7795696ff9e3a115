#include "geometry/LcLRotation.h"

#include <cmath>

#include "foundation/LcUString.h"
#include "geometry/LcLEpsilon.h"

static constexpr double kPi = 3.141592653589793;

// acos that forgives a cosine rounded just past 1, and keeps NaN.
static double SafeAcos(double c) { return std::acos(c > 1.0 ? 1.0 : c < -1.0 ? -1.0 : c); }

LcLRotation::LcLRotation(const LcLVector3f& axis, double angle) {
  LcLVector3f unit = axis.Normalised() * std::sin(angle * 0.5);
  x = unit.x;
  y = unit.y;
  z = unit.z;
  w = std::cos(angle * 0.5);
}

LcLRotation LcLRotation::Between(const LcLVector3f& from, const LcLVector3f& to) {
  double c = from.Dot(to);
  if (1.0 - c < LcLEpsilon) return LcLRotation();
  if (c + 1.0 < LcLEpsilon) {
    // Opposite: any axis across from will do for a half turn.
    LcLVector3f axis = from.Cross(LcLVector3f(1.0, 0.0, 0.0));
    if (axis.Length() < LcLEpsilon) axis = from.Cross(LcLVector3f(0.0, 1.0, 0.0));
    axis.Normalise();
    return LcLRotation(axis.x, axis.y, axis.z, 0.0);
  }
  LcLVector3f axis = from.Cross(to).Normalised() * std::sqrt((1.0 - c) * 0.5);
  return LcLRotation(axis.x, axis.y, axis.z, std::sqrt((1.0 + c) * 0.5));
}

LcLRotation LcLRotation::FromEuler(double ex, double ey, double ez) {
  return LcLRotation(LcLVector3f(0.0, 0.0, 1.0), ez) * LcLRotation(LcLVector3f(0.0, 1.0, 0.0), ey) *
         LcLRotation(LcLVector3f(1.0, 0.0, 0.0), ex);
}

LcLRotation LcLRotation::FromMatrix(const LcLMatrix3& matrix, double m44) {
  const double(&m)[3][3] = matrix.m;
  int i = 0;
  if (m[1][1] > m[0][0]) i = 1;
  if (m[2][2] > m[i][i]) i = 2;
  double trace = m[0][0] + m[1][1] + m[2][2];
  if (trace > m[i][i]) {
    double w = std::sqrt(trace + m44) * 0.5;
    double f = 0.25 / w;
    return LcLRotation((m[1][2] - m[2][1]) * f, (m[2][0] - m[0][2]) * f, (m[0][1] - m[1][0]) * f, w);
  }
  int j = (i + 1) % 3;
  int k = (j + 1) % 3;
  double q[4];
  q[i] = std::sqrt(m[i][i] - m[j][j] - m[k][k] + m44) * 0.5;
  double f = 0.25 / q[i];
  q[j] = (m[i][j] + m[j][i]) * f;
  q[k] = (m[i][k] + m[k][i]) * f;
  q[3] = (m[j][k] - m[k][j]) * f;
  return LcLRotation(q[0], q[1], q[2], q[3]);
}

LcLRotation LcLRotation::operator*(const LcLRotation& b) const {
  // Row vectors apply this first, which is the Hamilton product b ⊗ this.
  LcLRotation p(b.w * x + b.x * w + b.y * z - b.z * y, b.w * y - b.x * z + b.y * w + b.z * x,
                b.w * z + b.x * y - b.y * x + b.z * w, b.w * w - b.x * x - b.y * y - b.z * z);
  p.Normalise();
  return p;
}

LcLMatrix3 LcLRotation::GetMatrix() const {
  return LcLMatrix3({{1.0 - 2.0 * (y * y + z * z), 2.0 * (x * y + z * w), 2.0 * (x * z - y * w)},
                     {2.0 * (x * y - z * w), 1.0 - 2.0 * (x * x + z * z), 2.0 * (y * z + x * w)},
                     {2.0 * (x * z + y * w), 2.0 * (y * z - x * w), 1.0 - 2.0 * (x * x + y * y)}});
}

void LcLRotation::GetAxisAngle(LcLVector3f& axis, double& angle) const {
  LcLVector3f v(x, y, z);
  double length = v.Length();
  if (length > LcLEpsilon) {
    axis = v * (1.0 / length);
    angle = 2.0 * SafeAcos(w);
  } else {
    axis = LcLVector3f(0.0, 0.0, 1.0);
    angle = 0.0;
  }
}

// A turn about one axis whose quaternion component is v: 2 acos(w), signed by
// v and kept within (-pi, pi].
static double SingleAxisAngle(double v, double w) {
  double angle = 2.0 * SafeAcos(w);
  if (v < 0.0) angle = -angle;
  if (angle > kPi) angle -= 2.0 * kPi;
  return angle;
}

bool LcLRotation::GetEuler(double& ex, double& ey, double& ez) const {
  ex = ey = ez = 0.0;
  if (y == 0.0 && z == 0.0) {
    if (x != 0.0) ex = SingleAxisAngle(x, w);
    return true;
  }
  if (x == 0.0 && z == 0.0) {
    ey = SingleAxisAngle(y, w);
    return true;
  }
  if (x == 0.0 && y == 0.0) {
    ez = SingleAxisAngle(z, w);
    return true;
  }
  double s = y * w + x * z;
  if (s >= 0.5 - LcLPoleEpsilon || s <= LcLPoleEpsilon - 0.5) {
    // At a pole the x and z turns share one axis; all of it goes to z.
    ey = s > 0.0 ? kPi * 0.5 : -kPi * 0.5;
    ez = std::atan2(2.0 * (x * y + z * w), 1.0 - 2.0 * (x * x + z * z));
    return true;
  }
  ex = std::atan2(2.0 * (x * w - y * z), 1.0 - 2.0 * (x * x + y * y));
  ey = std::asin(2.0 * s);
  ez = std::atan2(2.0 * (z * w - x * y), 1.0 - 2.0 * (y * y + z * z));
  return true;
}

void LcLRotation::Normalise() {
  double f = 1.0 / std::sqrt(x * x + y * y + z * z + w * w);
  x *= f;
  y *= f;
  z *= f;
  w *= f;
}

bool LcLRotation::Equals(const LcLRotation& o, double tolerance) const {
  return std::fabs(x - o.x) <= tolerance && std::fabs(y - o.y) <= tolerance && std::fabs(z - o.z) <= tolerance &&
         std::fabs(w - o.w) <= tolerance;
}

bool LcLRotation::GetText(LcUString& text) const {
  const double degrees = 57.29577951308232;
  double ex, ey, ez;
  GetEuler(ex, ey, ez);
  return text.Format(u"(%.4f, %.4f, %.4f)", ex * degrees, ey * degrees, ez * degrees);
}
