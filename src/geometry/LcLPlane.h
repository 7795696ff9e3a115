#pragma once
#include "geometry/LcLLine.h"

// The points p with normal · p = distance.
class LcLPlane {
public:
  LcLPlane() : normal(0.0, 0.0, 1.0), distance(0.0) {}
  LcLPlane(const LcLVector3f& normal, double distance) : normal(normal), distance(distance) {}
  LcLPlane(const LcLVector3f& normal, const LcLPoint3f& through)
      : normal(normal), distance(normal.Dot(through.AsVector())) {}

  // Signed, in units of the normal's length.
  double Distance(const LcLPoint3f& p) const { return normal.Dot(p.AsVector()) - distance; }

  // False, with the output left alone, when the line runs parallel.
  bool Intersect(const LcLLine& line, LcLPoint3f& out) const;

  LcLVector3f normal;
  double distance;
};
