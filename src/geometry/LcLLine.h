#pragma once
#include "geometry/LcLPoint.h"

// An infinite line kept as its point nearest the origin and a unit direction,
// so that equal lines have equal fields.
class LcLLine {
public:
  LcLLine() : direction(0.0, 0.0, 1.0) {}
  LcLLine(const LcLPoint3f& through, const LcLVector3f& direction);

  LcLPoint3f ClosestPoint(const LcLPoint3f& p) const;

  LcLPoint3f point;
  LcLVector3f direction;
};
