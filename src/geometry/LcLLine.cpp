#include "geometry/LcLLine.h"

LcLLine::LcLLine(const LcLPoint3f& through, const LcLVector3f& dir) : direction(dir.Normalised()) {
  LcLVector3f p = through.AsVector();
  point = LcLPoint3f() + (p - direction * p.Dot(direction));
}

LcLPoint3f LcLLine::ClosestPoint(const LcLPoint3f& p) const {
  return point + direction * (p - point).Dot(direction);
}
