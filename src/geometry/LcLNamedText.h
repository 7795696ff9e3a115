#pragma once
#include "geometry/LcLBox.h"
#include "geometry/LcLColor3f.h"
#include "geometry/LcLPlane.h"
#include "geometry/LcLPoint.h"
#include "geometry/LcLRotation.h"
#include "geometry/LcLVector.h"

class LcUXMLDOMStream;

// The geometry's named-text (XML) elements. Each reads or writes as its
// stream does; numbers are written in the "C" locale as the shortest text
// that reads back to the same double.
class LcLNamedText {
public:
  static bool Serialise(LcUXMLDOMStream& stream, LcLPoint3f& point);
  static bool Serialise(LcUXMLDOMStream& stream, LcLPoint2f& point);
  static bool Serialise(LcUXMLDOMStream& stream, LcLVector3f& vector);
  static bool Serialise(LcUXMLDOMStream& stream, LcLVector2f& vector);
  static bool Serialise(LcUXMLDOMStream& stream, LcLColor3f& color);
  static bool Serialise(LcUXMLDOMStream& stream, LcLPlane& plane);
  static bool Serialise(LcUXMLDOMStream& stream, LcLBox3f& box);
  // Read rotations are renormalised.
  static bool Serialise(LcUXMLDOMStream& stream, LcLRotation& rotation);
  // One number as an attribute.
  static bool FloatAttribute(LcUXMLDOMStream& stream, const char* name, double& value);

private:
  template <int N>
  static bool Components(LcUXMLDOMStream& stream, const char* element, double* values);
};
