#pragma once
#include "geometry/LcLMatrix4.h"
#include "geometry/LcLRotation.h"

class LcUString;

// A transform in parts, applied in this order: move the centre to the origin,
// stretch by scale along the axes of scaleOrientation, turn by rotation, move
// back, translate.
class LcLDecomposedTransform {
public:
  LcLDecomposedTransform() : scale(1.0, 1.0, 1.0) {}

  LcLMatrix4 GetMatrix() const;

  // "Scale: ...\nScale orientation: ...\nRotation: ...\nCenter: ...\nTranslation: ..."
  bool GetText(LcUString& text) const;

  LcLVector3f scale;
  LcLRotation scaleOrientation;
  LcLRotation rotation;
  LcLPoint3f centre;
  LcLVector3f translation;
};
