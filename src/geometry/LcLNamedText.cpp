#include "geometry/LcLNamedText.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <initializer_list>

#include "serial/LcUXMLDOMStream.h"

bool LcLNamedText::FloatAttribute(LcUXMLDOMStream& stream, const char* name, double& value) {
  if (stream.IsWriting()) {
    char text[32];
    std::to_chars_result r = std::to_chars(text, text + sizeof text - 1, value);
    *r.ptr = 0;
    LcUString wide;
    LcUString::AsciiToWide(text, wide);
    return stream.StringAttribute(name, wide, nullptr);
  }
  LcUString wide;
  if (!stream.StringAttribute(name, wide, nullptr)) return false;
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(wide.Get() ? wide.Get() : u"", narrow, true);
  const char* text = narrow.Get() ? narrow.Get() : "";
  if (*text == '+') ++text;
  const char* end = text + std::strlen(text);
  double parsed;
  std::from_chars_result r = std::from_chars(text, end, parsed);
  if (r.ec != std::errc() || r.ptr != end || r.ptr == text) return false;
  value = parsed;
  return true;
}

template <int N>
bool LcLNamedText::Components(LcUXMLDOMStream& stream, const char* element, double* values) {
  static const char* const names[3] = {"x", "y", "z"};
  double read[N];
  for (int i = 0; i < N; ++i) read[i] = values[i];
  bool ok = stream.BeginElement(element, 0);
  for (int i = 0; i < N; ++i) ok = ok && FloatAttribute(stream, names[i], read[i]);
  stream.EndElement(element);
  if (ok)
    for (int i = 0; i < N; ++i) values[i] = read[i];
  return ok;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLPoint3f& p) {
  double v[3] = {p.x, p.y, p.z};
  if (!Components<3>(stream, "pos3f", v)) return false;
  p = LcLPoint3f(v[0], v[1], v[2]);
  return true;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLPoint2f& p) {
  double v[2] = {p.x, p.y};
  if (!Components<2>(stream, "pos2f", v)) return false;
  p = LcLPoint2f(v[0], v[1]);
  return true;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLVector3f& p) {
  double v[3] = {p.x, p.y, p.z};
  if (!Components<3>(stream, "vec3f", v)) return false;
  p = LcLVector3f(v[0], v[1], v[2]);
  return true;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLVector2f& p) {
  double v[2] = {p.x, p.y};
  if (!Components<2>(stream, "vec2f", v)) return false;
  p = LcLVector2f(v[0], v[1]);
  return true;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLColor3f& color) {
  LcLColor3f read = color;
  bool ok = stream.BeginElement("color3f", 0);
  ok = ok && FloatAttribute(stream, "red", read.red) && FloatAttribute(stream, "green", read.green) &&
       FloatAttribute(stream, "blue", read.blue);
  stream.EndElement("color3f");
  if (ok) color = read;
  return ok;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLPlane& plane) {
  LcLPlane read = plane;
  bool ok = stream.BeginElement("plane", 0);
  ok = ok && FloatAttribute(stream, "distance", read.distance) && Serialise(stream, read.normal);
  stream.EndElement("plane");
  if (ok) plane = read;
  return ok;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLBox3f& box) {
  LcLBox3f read = box;
  bool ok = stream.BeginElement("box3f", 0);
  for (const char* corner : {"min", "max"}) {
    ok = ok && stream.BeginElement(corner, 0);
    ok = ok && Serialise(stream, corner[1] == 'i' ? read.min : read.max);
    if (ok) ok = stream.EndElement(corner);
  }
  stream.EndElement("box3f");
  if (ok) box = read;
  return ok;
}

bool LcLNamedText::Serialise(LcUXMLDOMStream& stream, LcLRotation& rotation) {
  LcLRotation read = rotation;
  bool ok = stream.BeginElement("rotation", 0) && stream.BeginElement("quaternion", 0);
  ok = ok && FloatAttribute(stream, "a", read.x) && FloatAttribute(stream, "b", read.y) &&
       FloatAttribute(stream, "c", read.z) && FloatAttribute(stream, "d", read.w);
  stream.EndElement("quaternion");
  stream.EndElement("rotation");
  if (!ok) return false;
  if (!stream.IsWriting()) {
    double scale = 1.0 / std::sqrt(read.x * read.x + read.y * read.y + read.z * read.z + read.w * read.w);
    read = LcLRotation(read.x * scale, read.y * scale, read.z * scale, read.w * scale);
  }
  rotation = read;
  return true;
}
