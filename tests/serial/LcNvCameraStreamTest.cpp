#include "StreamTesting.h"
#include "geometry/LcNvCamera.h"

using namespace StreamTesting;

namespace {
class CameraStream : public StreamTest {};

LcNvCamera Sample() {
  LcNvCamera camera;
  camera.projection = LcNvCamera::eORTHOGRAPHIC;
  camera.position = LcLPoint3f(1.5, -2.25, 1e-3);
  camera.rotation = LcLRotation(0.5, 0.5, -0.5, 0.5);
  camera.aspect = 1.75;
  camera.height = 20.0;
  camera.nearDistance = 0.125;
  camera.farDistance = 1000.0;
  camera.verticalOffset = 0.25;
  camera.horizontalOffset = -0.125;
  return camera;
}

TEST_F(CameraStream, TheVersionGatesTheOffsets) {
  for (uint32_t version : {424u, 425u}) {
    LcUStreamBuffer buffer;
    LcUStreamWriter writer(&buffer, version);
    ASSERT_TRUE(writer.WriteBegin(false));
    EXPECT_TRUE(Sample().Write(writer));
    ASSERT_TRUE(writer.WriteEnd());
    // An int and 11 or 13 doubles, the int padded to 8.
    EXPECT_EQ(version >= 425 ? 112u : 96u, buffer.GetSize());

    LcUStreamReader reader(&buffer, version);
    ASSERT_TRUE(reader.ReadBegin(false));
    LcNvCamera read;
    read.verticalOffset = 9.0;
    read.horizontalOffset = 8.0;
    EXPECT_TRUE(read.Read(reader));
    EXPECT_TRUE(reader.ReadEnd(true));
    LcNvCamera expected = Sample();
    if (version < 425) {
      expected.verticalOffset = 9.0;
      expected.horizontalOffset = 8.0;
    }
    // Field by field: the image has padding after the projection.
    EXPECT_EQ(expected.projection, read.projection);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(expected.position[i], read.position[i]);
    EXPECT_EQ(0, std::memcmp(&expected.rotation, &read.rotation, sizeof read.rotation));
    EXPECT_EQ(0, std::memcmp(&expected.aspect, &read.aspect, sizeof(double) * 6)) << version;
  }
}

TEST_F(CameraStream, OnlyProjectionsAboveOneFail) {
  for (int32_t projection : {-1, 1, 2}) {
    std::string bytes = Written({0, 1, 0}, [&](LcUStreamWriter& w) {
      LcNvCamera camera = Sample();
      camera.projection = projection;
      camera.Write(w);
    });
    LcUStreamBuffer buffer;
    LcUStreamReader reader(&buffer);
    ASSERT_TRUE(BeginReading(buffer, reader, bytes));
    LcNvCamera camera;
    EXPECT_EQ(projection <= 1, camera.Read(reader)) << projection;
  }
}

TEST_F(CameraStream, AnUnknownProjectionFailsTheStream) {
  std::string bytes = Written({1, 1, 0}, [](LcUStreamWriter& w) {
    LcNvCamera camera = Sample();
    camera.projection = 2;
    camera.Write(w);
  });
  LcUStreamBuffer buffer;
  LcUStreamReader reader(&buffer);
  ASSERT_TRUE(BeginReading(buffer, reader, bytes));
  LcNvCamera camera;
  EXPECT_FALSE(camera.Read(reader));
  EXPECT_EQ(16, reader.GetError());
}
}  // namespace
