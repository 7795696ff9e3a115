#include "geometry/LcNvCamera.h"

#include <cmath>

#include "foundation/LcUSysError.h"
#include "geometry/LcLMatrix.h"

LcUComponent LcNvCamera::component;

bool LcNvCamera::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcNvCamera") == 1) return LcLMatrix::Initialize();
  return true;
}

void LcNvCamera::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) == 1) LcLMatrix::Terminate();
}

void LcNvCamera::GetFrame(LcLPoint3f& eye, LcLVector3f& direction, LcLVector3f& up) const {
  eye = position;
  direction = ViewDirection().Normalised();
  up = UpVector().Normalised();
}

LcLPlane LcNvCamera::PlaneAt(double distance) const {
  LcLVector3f direction = ViewDirection();
  return LcLPlane(direction.Normalised(), position + direction * distance);
}

double LcNvCamera::ViewHeightAt(double distance) const {
  return IsPerspective() ? std::tan(height * 0.5) * (distance + distance) : height;
}

bool LcNvCamera::IsVolumeValid(double aspectInUse) const {
  // Negated tests, so that a NaN passes and goes on into the arithmetic.
  return !(nearDistance >= farDistance || aspectInUse <= 0.0 || height <= 0.0 ||
           (IsPerspective() && nearDistance <= 0.0));
}

bool LcNvCamera::GetFrustum(double& left, double& right, double& bottom, double& top, double givenAspect) const {
  double a = AspectInUse(givenAspect);
  if (!IsVolumeValid(a)) return false;
  double t = IsPerspective() ? std::tan(height * 0.5) * nearDistance : height * 0.5;
  double b = -t;
  double r = a * t;
  double l = -r;
  double dy = (t - b) * verticalOffset;
  double dx = (r - l) * horizontalOffset;
  left = l + dx;
  right = r + dx;
  bottom = b + dy;
  top = t + dy;
  return true;
}

bool LcNvCamera::GetProjection(LcLMatrix4& matrix, double givenAspect) const {
  double l, r, b, t;
  if (!GetFrustum(l, r, b, t, givenAspect)) return false;
  matrix = IsPerspective() ? LcLMatrix4::Perspective(l, r, b, t, nearDistance, farDistance)
                           : LcLMatrix4::Orthographic(l, r, b, t, nearDistance, farDistance);
  return true;
}

bool LcNvCamera::GetViewProjection(LcLMatrix4& matrix, double givenAspect) const {
  LcLMatrix4 projection;
  if (!GetProjection(projection, givenAspect)) return false;
  matrix = projection * LcLMatrix4(rotation.GetMatrix(), position.AsVector());
  return true;
}

void LcNvCamera::SetExtents(double distance, double width, double viewHeight) {
  aspect = width / viewHeight;
  height = IsPerspective() ? 2.0 * std::atan(viewHeight / (distance + distance)) : viewHeight;
}

LcLPoint3f LcNvCamera::Unproject(double x, double y, double depth, double aspectInUse) const {
  double h = ViewHeightAt(depth);
  double w = h * aspectInUse;
  LcLVector3f eye(w * (horizontalOffset + x * 0.5), h * (verticalOffset + y * 0.5), -depth);
  return position + rotation.Rotate(eye);
}
