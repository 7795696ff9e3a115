#include "geometry/LcLPlane.h"

bool LcLPlane::Intersect(const LcLLine& line, LcLPoint3f& out) const {
  double denominator = normal.Dot(line.direction);
  if (denominator == 0.0) return false;
  double t = (distance - normal.Dot(line.point.AsVector())) / denominator;
  out = line.point + line.direction * t;
  return true;
}
