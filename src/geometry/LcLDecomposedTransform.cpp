#include "geometry/LcLDecomposedTransform.h"

#include "foundation/LcUString.h"

LcLMatrix4 LcLDecomposedTransform::GetMatrix() const {
  LcLMatrix3 orientation = scaleOrientation.GetMatrix();
  LcLMatrix3 stretch({{scale.x, 0.0, 0.0}, {0.0, scale.y, 0.0}, {0.0, 0.0, scale.z}});
  LcLMatrix3 linear = orientation.Transposed() * stretch * orientation * rotation.GetMatrix();
  LcLVector3f c = centre.AsVector();
  return LcLMatrix4(linear, c - linear.Transform(c) + translation);
}

bool LcLDecomposedTransform::GetText(LcUString& text) const {
  LcUString parts[5];
  bool ok = scale.GetText(parts[0]);
  ok = scaleOrientation.GetText(parts[1]) && ok;
  ok = rotation.GetText(parts[2]) && ok;
  ok = centre.GetText(parts[3]) && ok;
  ok = translation.GetText(parts[4]) && ok;
  return text.Format(u"Scale: %ls\nScale orientation: %ls\nRotation: %ls\nCenter: %ls\nTranslation: %ls",
                     parts[0].Get(), parts[1].Get(), parts[2].Get(), parts[3].Get(), parts[4].Get()) &&
         ok;
}
