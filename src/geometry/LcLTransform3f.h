#pragma once
#include <cstdint>

#include "geometry/LcLDecomposedTransform.h"
#include "geometry/LcLMatrix4.h"
#include "geometry/LcLRotation.h"

class LcUString;

// A transform tagged with what it does, so that products skip the parts that
// are absent. Without ePROJECTIVE it holds a linear part and a translation;
// the linear part counts as identity when no low trait is set and the
// translation as zero without eTRANSLATION. With ePROJECTIVE it holds a 4 x 4.
class LcLTransform3f {
public:
  enum {
    eROTATION = 1,
    eUNIFORM_SCALE = 2,
    eGENERAL_SCALE = 4,
    eLINEAR = eROTATION | eUNIFORM_SCALE | eGENERAL_SCALE,
    eTRANSLATION = 16,
    eGENERAL_AFFINE = eLINEAR | eTRANSLATION,
    ePROJECTIVE = 32,
  };

  LcLTransform3f() : traits(0), affine() {}
  // eGENERAL_AFFINE when the fourth column is (0, 0, 0, 1), else ePROJECTIVE.
  explicit LcLTransform3f(const LcLMatrix4& matrix);
  LcLTransform3f(const LcLMatrix3& linear, const LcLVector3f& translation);
  explicit LcLTransform3f(const LcLDecomposedTransform& parts);
  static LcLTransform3f FromTranslation(const LcLVector3f& translation);
  static LcLTransform3f FromRotation(const LcLRotation& rotation);
  static LcLTransform3f FromScale(double scale);

  LcLMatrix4 GetMatrix() const;
  LcLMatrix3 GetLinear() const;
  LcLVector3f GetTranslation() const;

  // This, then b; parts that either side lacks are skipped, not multiplied.
  LcLTransform3f operator*(const LcLTransform3f& b) const;

  // Drops non-finite parts with a warning, and parts and traits within
  // tolerance of doing nothing. A projective form whose fourth column is
  // (0, 0, 0, 1) within tolerance becomes affine.
  void Clean(double tolerance);

  // The affine part as scale, orientations and translation, centre at the
  // origin.
  void GetDecomposed(LcLDecomposedTransform& parts) const;

  // "Traits: %x\n" and the 4 x 4 form.
  bool GetText(LcUString& text) const;

  uint32_t traits;

private:
  struct Affine {
    LcLMatrix3 linear;
    LcLVector3f translation;
  };
  // Active member chosen by ePROJECTIVE.
  union {
    Affine affine;
    LcLMatrix4 full;
  };
};
