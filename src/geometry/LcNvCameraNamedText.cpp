#include "geometry/LcLNamedText.h"
#include "geometry/LcNvCamera.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLEnumeration.h"

bool LcNvCamera::SerialiseXML(LcUXMLDOMStream& stream) {
  static const LcUXMLEnumeration::Pair kProjections[] = {{ePERSPECTIVE, "persp"}, {eORTHOGRAPHIC, "ortho"}};
  LcUXMLEnumeration projections(kProjections, 2);
  LcNvCamera read = *this;
  bool ok = stream.BeginElement("camera", 0);
  ok = projections.Serialise(stream, "projection", read.projection, ePERSPECTIVE) && ok;
  ok = ok && LcLNamedText::FloatAttribute(stream, "near", read.nearDistance) &&
       LcLNamedText::FloatAttribute(stream, "far", read.farDistance) &&
       LcLNamedText::FloatAttribute(stream, "aspect", read.aspect) &&
       LcLNamedText::FloatAttribute(stream, "height", read.height);
  ok = ok && stream.BeginElement("position", 0) && LcLNamedText::Serialise(stream, read.position);
  if (ok) ok = stream.EndElement("position");
  ok = ok && LcLNamedText::Serialise(stream, read.rotation);
  stream.EndElement("camera");
  // A missing or unknown projection reads as perspective, as the stream's error says.
  if (!stream.IsWriting()) projection = read.projection;
  if (ok) *this = read;
  return ok;
}
