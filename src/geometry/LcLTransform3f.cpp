#include "geometry/LcLTransform3f.h"

#include <cmath>

#include "foundation/LcUString.h"
#include "geometry/LcLPolarDecomposition.h"
#include "geometry/LcLWarning.h"

LcLTransform3f::LcLTransform3f(const LcLMatrix4& matrix) : traits(eGENERAL_AFFINE), affine() {
  if (matrix.IsAffine()) {
    affine.linear = matrix.Linear();
    affine.translation = matrix.Translation();
  } else {
    traits = ePROJECTIVE;
    full = matrix;
  }
}

LcLTransform3f::LcLTransform3f(const LcLMatrix3& linear, const LcLVector3f& translation)
    : traits(eGENERAL_AFFINE), affine{linear, translation} {}

LcLTransform3f::LcLTransform3f(const LcLDecomposedTransform& parts) : LcLTransform3f(parts.GetMatrix()) {}

LcLTransform3f LcLTransform3f::FromTranslation(const LcLVector3f& translation) {
  LcLTransform3f t;
  t.traits = eTRANSLATION;
  t.affine.translation = translation;
  return t;
}

LcLTransform3f LcLTransform3f::FromRotation(const LcLRotation& rotation) {
  LcLTransform3f t;
  t.traits = eROTATION;
  t.affine.linear = rotation.GetMatrix();
  return t;
}

LcLTransform3f LcLTransform3f::FromScale(double scale) {
  LcLTransform3f t;
  t.traits = eUNIFORM_SCALE;
  t.affine.linear = LcLMatrix3() * scale;
  return t;
}

LcLMatrix4 LcLTransform3f::GetMatrix() const {
  return traits & ePROJECTIVE ? full : LcLMatrix4(GetLinear(), GetTranslation());
}

LcLMatrix3 LcLTransform3f::GetLinear() const {
  if (traits & ePROJECTIVE) return full.Linear();
  return traits & eLINEAR ? affine.linear : LcLMatrix3();
}

LcLVector3f LcLTransform3f::GetTranslation() const {
  if (traits & ePROJECTIVE) return full.Translation();
  return traits & eTRANSLATION ? affine.translation : LcLVector3f();
}

LcLTransform3f LcLTransform3f::operator*(const LcLTransform3f& b) const {
  LcLTransform3f p;
  p.traits = traits | b.traits;
  if (p.traits & ePROJECTIVE) {
    p.full = GetMatrix() * b.GetMatrix();
    return p;
  }
  bool linear = traits & eLINEAR;
  bool bLinear = b.traits & eLINEAR;
  if (linear && bLinear) {
    p.affine.linear = affine.linear * b.affine.linear;
  } else if (linear || bLinear) {
    p.affine.linear = linear ? affine.linear : b.affine.linear;
  }
  if (traits & eTRANSLATION) {
    p.affine.translation = bLinear ? b.affine.linear.Transform(affine.translation) : affine.translation;
  }
  if (b.traits & eTRANSLATION) p.affine.translation += b.affine.translation;
  return p;
}

static bool IsFinite(const LcLMatrix3& m) {
  for (const auto& row : m.m) {
    for (double v : row) {
      if (!std::isfinite(v)) return false;
    }
  }
  return true;
}

void LcLTransform3f::Clean(double tolerance) {
  if (traits & ePROJECTIVE) {
    const LcLMatrix4 m = full;
    double c0 = m.m[0][3], c1 = m.m[1][3], c2 = m.m[2][3], c3 = m.m[3][3];
    if (!std::isfinite(c0) || !std::isfinite(c1) || !std::isfinite(c2) || !std::isfinite(c3)) {
      LcLWarning::Post(nullptr, -1, nullptr,
                       "Fourth column in LcLTransform3f contained non-finite numbers %f %f %f %f. Matrix set to affine.",
                       c0, c1, c2, c3);
    } else if (std::fabs(c0) > tolerance || std::fabs(c1) > tolerance || std::fabs(c2) > tolerance ||
               std::fabs(c3 - 1.0) > tolerance) {
      return;
    }
    affine = Affine{m.Linear(), m.Translation()};
    traits = eGENERAL_AFFINE;
  }

  if (traits & eTRANSLATION) {
    const LcLVector3f& t = affine.translation;
    if (!std::isfinite(t.x) || !std::isfinite(t.y) || !std::isfinite(t.z)) {
      LcLWarning::Post(nullptr, -1, nullptr,
                       "Translation in LcLTransform3f contained non-finite numbers %f %f %f. Translation component removed.",
                       t.x, t.y, t.z);
      affine.translation = LcLVector3f();
      traits &= ~eTRANSLATION;
    } else if (t.Equals(LcLVector3f(), tolerance)) {
      affine.translation = LcLVector3f();
      traits &= ~eTRANSLATION;
    }
  }

  if (!(traits & eLINEAR)) return;
  if (!IsFinite(affine.linear)) {
    LcLWarning::Post(nullptr, -1, nullptr,
                     "Linear matrix in LcLTransform3f contained non-finite numbers. Matrix reset to identity");
    affine.linear = LcLMatrix3();
    traits &= ~eLINEAR;
    return;
  }
  if (affine.linear.Equals(LcLMatrix3(), tolerance)) {
    affine.linear = LcLMatrix3();
    traits &= ~eLINEAR;
    return;
  }

  LcLPolarDecomposition parts(affine.linear);
  const LcLVector3f& s = parts.scale;
  if (!(std::fabs(s.x - s.y) <= tolerance && std::fabs(s.y - s.z) <= tolerance)) return;
  // A uniform scale needs no orientation of its own.
  traits &= ~eGENERAL_SCALE;
  LcLRotation rotation = LcLRotation::FromMatrix(parts.rotation);
  if (rotation.Equals(LcLRotation(), tolerance)) {
    rotation = LcLRotation();
    traits &= ~eROTATION;
  } else {
    traits |= eROTATION;
  }
  if (std::fabs(s.x - 1.0) > tolerance) {
    traits |= eUNIFORM_SCALE;
    affine.linear = rotation.GetMatrix() * s.x;
  } else {
    traits &= ~eUNIFORM_SCALE;
    affine.linear = rotation.GetMatrix();
  }
}

void LcLTransform3f::GetDecomposed(LcLDecomposedTransform& parts) const {
  LcLPolarDecomposition polar(GetLinear());
  parts.scale = polar.scale;
  parts.scaleOrientation = LcLRotation::FromMatrix(polar.scaleOrientation);
  parts.rotation = LcLRotation::FromMatrix(polar.rotation);
  parts.centre = LcLPoint3f();
  parts.translation = GetTranslation();
}

bool LcLTransform3f::GetText(LcUString& text) const {
  LcUString matrix;
  bool ok = GetMatrix().GetText(matrix);
  return text.Format(u"Traits: %x\n%ls", traits, matrix.Get()) && ok;
}
