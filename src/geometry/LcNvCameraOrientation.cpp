#include <cmath>

#include "geometry/LcLTransform3f.h"
#include "geometry/LcNvCamera.h"

void LcNvCamera::SetViewDirection(const LcLVector3f& direction) {
  if (direction == LcLVector3f()) return;
  rotation = rotation * LcLRotation::Between(ViewDirection().Normalised(), direction.Normalised());
}

void LcNvCamera::LookAt(const LcLPoint3f& point) {
  if (point == position) return;
  SetViewDirection(point - position);
}

void LcNvCamera::LookAtKeepingOffset(const LcLPoint3f& point) {
  if (horizontalOffset == 0.0 && verticalOffset == 0.0) {
    LookAt(point);
    return;
  }
  double depth = Depth(point);
  if (depth == 0.0) return;
  if (depth < 0.0) {
    rotation.x = -rotation.x;
    rotation.y = -rotation.y;
    rotation.z = -rotation.z;
  }
  LcLVector3f towardsCentre = Unproject(0.0, 0.0, depth, aspect) - position;
  rotation = rotation * LcLRotation::Between(towardsCentre.Normalised(), (point - position).Normalised());
}

void LcNvCamera::SetUpVector(const LcLVector3f& up) { SetFrame(ViewDirection(), up); }

void LcNvCamera::SetFrame(const LcLVector3f& direction, const LcLVector3f& up) {
  LcLVector3f d = direction.Normalised();
  LcLVector3f s = up.Cross(d);
  if (s.Normalise() == 0.0) return;
  LcLVector3f u = d.Cross(s);
  // The rows are where the camera's x, y and z axes go: x = -s, z = -d.
  rotation = LcLRotation::FromMatrix(LcLMatrix3({{-s.x, -s.y, -s.z}, {u.x, u.y, u.z}, {-d.x, -d.y, -d.z}}));
}

void LcNvCamera::Transform(const LcLMatrix4& matrix) {
  LcLTransform3f moved(LcLMatrix4(rotation.GetMatrix(), position.AsVector()) * matrix);
  LcLDecomposedTransform parts;
  moved.GetDecomposed(parts);
  rotation = parts.rotation;
  position = LcLPoint3f() + parts.translation;
  if (!IsPerspective()) {
    double f = std::fabs(parts.scale.x + parts.scale.y + parts.scale.z) / 3.0;
    height *= f;
    nearDistance *= f;
    farDistance *= f;
  }
}
