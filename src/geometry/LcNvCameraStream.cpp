#include <cstdio>

#include "geometry/LcNvCamera.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
// Streams from this version on carry the view offsets.
constexpr uint32_t kOffsetsVersion = 425;
}  // namespace

bool LcNvCamera::Read(LcUStreamReader& stream) {
  int32_t kind = stream.ReadInt32();
  if (stream.GetError() == 0 && kind > eORTHOGRAPHIC) {
    char read[16];
    std::snprintf(read, sizeof read, "%d", kind);
    stream.FailMismatch(read, "Projection");
    return false;
  }
  projection = kind;
  for (int i = 0; i < 3; ++i) position[i] = stream.ReadFloat();
  rotation.x = stream.ReadFloat();
  rotation.y = stream.ReadFloat();
  rotation.z = stream.ReadFloat();
  rotation.w = stream.ReadFloat();
  aspect = stream.ReadFloat();
  height = stream.ReadFloat();
  nearDistance = stream.ReadFloat();
  farDistance = stream.ReadFloat();
  if (stream.GetFormatVersion() >= kOffsetsVersion) {
    verticalOffset = stream.ReadFloat();
    horizontalOffset = stream.ReadFloat();
  }
  return stream.GetError() == 0;
}

bool LcNvCamera::Write(LcUStreamWriter& stream) const {
  stream.WriteInt32(projection);
  for (int i = 0; i < 3; ++i) stream.WriteFloat(position[i]);
  stream.WriteFloat(rotation.x);
  stream.WriteFloat(rotation.y);
  stream.WriteFloat(rotation.z);
  stream.WriteFloat(rotation.w);
  stream.WriteFloat(aspect);
  stream.WriteFloat(height);
  stream.WriteFloat(nearDistance);
  stream.WriteFloat(farDistance);
  if (stream.GetFormatVersion() >= kOffsetsVersion) {
    stream.WriteFloat(verticalOffset);
    stream.WriteFloat(horizontalOffset);
  }
  return stream.GetError() == 0;
}
