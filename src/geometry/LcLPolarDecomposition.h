#pragma once
#include "geometry/LcLMatrix3.h"
#include "geometry/LcLVector.h"

// Factors a linear map as L = SO^T × diag(scale) × SO × R: a stretch along
// the rows of SO, then the rotation R. SO and R are proper rotations; a
// mirroring map gets three negative scale factors.
class LcLPolarDecomposition {
public:
  explicit LcLPolarDecomposition(const LcLMatrix3& linear);

  LcLMatrix3 rotation;
  LcLVector3f scale;
  LcLMatrix3 scaleOrientation;
};
