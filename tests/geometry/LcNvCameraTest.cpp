#include <cstring>

#include "LcLGeometryTesting.h"
#include "geometry/LcNvCamera.h"

TEST(LcNvCamera, IsTheRecordsCameraImage) {
  // A record's bytes from 1552 are a camera: here the default one.
  unsigned char record[1728] = {};
  const double fields[13] = {0, 0, 1, 0, 0, 0, 1, 1, 0.785398, 1, 10, 0, 0};
  std::memcpy(record + 1560, fields, sizeof fields);
  const LcNvCamera defaults;
  EXPECT_EQ(0, std::memcmp(record + 1552, &defaults, 4));
  EXPECT_EQ(0, std::memcmp(record + 1560, reinterpret_cast<const unsigned char*>(&defaults) + 8, 104));
  uint64_t heightBits;
  std::memcpy(&heightBits, record + 1552 + 72, 8);
  EXPECT_EQ(0x3FE921FAFC8B007Au, heightBits);

  record[1552] = 1;
  record[1567] = 0x40;  // position.x becomes 2.0
  LcNvCamera camera;
  std::memcpy(&camera, record + 1552, sizeof camera);
  EXPECT_FALSE(camera.IsPerspective());
  EXPECT_EQ(LcLPoint3f(2, 0, 1), camera.position);
  EXPECT_EQ(10.0, camera.farDistance);
}

TEST(LcNvCamera, BasisAndPlanesFollowTheRotation) {
  LcNvCamera camera;
  EXPECT_EQ(LcLVector3f(0, 0, -1), camera.ViewDirection());
  EXPECT_EQ(0.0, camera.FarPlane().Distance(LcLPoint3f(3, -4, -9)));  // 10 beyond (0, 0, 1)
  EXPECT_EQ(7.0, camera.Depth(LcLPoint3f(5, 5, -6)));
  LcLRandom random;
  for (int i = 0; i < 50; ++i) {
    LcLVector3f axis = random.UnitVector();
    double angle = random.Uniform(-kPi, kPi);
    camera.rotation = LcLRotation(axis, angle);
    LcLMatrix3 turn = AxisAngleMatrix(axis, angle);
    EXPECT_VEC_NEAR(turn.Transform(LcLVector3f(0, 0, -1)), camera.ViewDirection(), 1e-14);
    EXPECT_VEC_NEAR(turn.Transform(LcLVector3f(0, 1, 0)), camera.UpVector(), 1e-14);
  }
  camera.rotation = LcLRotation(0, 0.5, 0, 0.5);  // too short: view (-0.5, 0, -0.5), not unit
  LcLPoint3f eye;
  LcLVector3f direction, up;
  camera.GetFrame(eye, direction, up);
  EXPECT_VEC_NEAR(LcLVector3f(-std::sqrt(0.5), 0, -std::sqrt(0.5)), direction, 1e-15);
  EXPECT_VEC_NEAR(LcLVector3f(0, 1, 0), up, 1e-15);
}

TEST(LcNvCamera, ViewVolumeValidity) {
  struct Case {
    const char* name;
    void (*change)(LcNvCamera&);
    double aspect;
    bool valid;
  } cases[] = {
      {"default", [](LcNvCamera&) {}, 0.0, true},
      {"near equals far", [](LcNvCamera& c) { c.nearDistance = c.farDistance; }, 0.0, false},
      {"own aspect zero", [](LcNvCamera& c) { c.aspect = 0; }, 0.0, false},
      {"given aspect overrides a bad own one", [](LcNvCamera& c) { c.aspect = -1; }, 2.0, true},
      {"NaN aspect passes", [](LcNvCamera&) {}, NAN, true},
      {"zero height", [](LcNvCamera& c) { c.height = 0; }, 0.0, false},
      {"perspective near at the eye", [](LcNvCamera& c) { c.nearDistance = 0; }, 0.0, false},
      {"orthographic near behind the eye", [](LcNvCamera& c) { c.projection = 1, c.nearDistance = -5; }, 0.0, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LcNvCamera camera;
    c.change(camera);
    double l = 7, r = 7, b = 7, t = 7;
    LcLMatrix4 projection = LcLMatrix4() * 7.0, viewProjection = projection;
    EXPECT_EQ(c.valid, camera.GetFrustum(l, r, b, t, c.aspect));
    EXPECT_EQ(c.valid, camera.GetProjection(projection, c.aspect));
    EXPECT_EQ(c.valid, camera.GetViewProjection(viewProjection, c.aspect));
    EXPECT_EQ(c.valid, !(l == 7 && t == 7 && projection == viewProjection && projection.m[0][0] == 7));
  }
}

TEST(LcNvCamera, FrustumCarriesTheOffsets) {
  LcNvCamera camera;
  camera.aspect = 2.0;
  camera.nearDistance = 3.0;
  camera.height = 2.0 * std::atan(0.5);  // 3 high at depth 3
  camera.verticalOffset = 0.25;
  camera.horizontalOffset = -0.5;
  double l, r, b, t;
  ASSERT_TRUE(camera.GetFrustum(l, r, b, t));
  EXPECT_VEC_NEAR(LcLVector3f(-6, 0, 0), LcLVector3f(l, r, 0), 1e-14);  // 6 wide, shifted by -3
  EXPECT_VEC_NEAR(LcLVector3f(-0.75, 2.25, 0), LcLVector3f(b, t, 0), 1e-14);
  ASSERT_TRUE(camera.GetFrustum(l, r, b, t, 1.0));
  EXPECT_NEAR(-3.0, l, 1e-14);
  camera.projection = LcNvCamera::eORTHOGRAPHIC;
  camera.height = 4.0;
  ASSERT_TRUE(camera.GetFrustum(l, r, b, t));
  EXPECT_VEC_NEAR(LcLVector3f(-8, 0, 3), LcLVector3f(l, r, t), 1e-14);
}

TEST(LcNvCamera, ProjectionMapsTheCubeOntoTheFrustum) {
  LcLRandom random;
  for (int i = 0; i < 40; ++i) {
    LcNvCamera camera;
    camera.projection = i % 2;
    camera.position = LcLPoint3f() + random.Vector(20.0);
    LcLVector3f axis = random.UnitVector();
    double angle = random.Uniform(-kPi, kPi);
    camera.rotation = LcLRotation(axis, angle);
    camera.aspect = 1.5;
    camera.height = camera.IsPerspective() ? 0.9 : 6.0;
    camera.nearDistance = 2.0;
    camera.farDistance = 30.0;
    camera.horizontalOffset = 0.2;
    camera.verticalOffset = -0.1;
    double l, r, b, t;
    LcLMatrix4 eyeFromDevice, worldFromDevice, deviceFromEye;
    ASSERT_TRUE(camera.GetFrustum(l, r, b, t) && camera.GetProjection(eyeFromDevice) &&
                camera.GetViewProjection(worldFromDevice) && eyeFromDevice.GetInverse(deviceFromEye));
    for (int corner = 0; corner < 8; ++corner) {
      LcLPoint3f device(corner & 1 ? 1 : -1, corner & 2 ? 1 : -1, corner & 4 ? 1 : -1);
      // The frustum's corner worked out from its sides, in eye space.
      double depth = device.z < 0 ? camera.nearDistance : camera.farDistance;
      double spread = camera.IsPerspective() ? depth / camera.nearDistance : 1.0;
      LcLPoint3f eye((device.x < 0 ? l : r) * spread, (device.y < 0 ? b : t) * spread, -depth);
      EXPECT_VEC_NEAR(eye, eyeFromDevice.TransformPoint(device), 1e-12);
      EXPECT_VEC_NEAR(device, deviceFromEye.TransformPoint(eye), 1e-12);
      LcLPoint3f world = worldFromDevice.TransformPoint(device);
      EXPECT_VEC_NEAR(camera.position + AxisAngleMatrix(axis, angle).Transform(eye.AsVector()), world, 1e-11);
      EXPECT_NEAR(0.0, (device.z < 0 ? camera.NearPlane() : camera.FarPlane()).Distance(world), 1e-11);
    }
  }
}

TEST(LcNvCamera, ExtentsAndOffsetsRoundTrip) {
  for (int projection : {LcNvCamera::ePERSPECTIVE, LcNvCamera::eORTHOGRAPHIC}) {
    LcNvCamera camera;
    camera.projection = projection;
    camera.SetExtents(5.0, 4.0, 3.0);
    EXPECT_NEAR(3.0, camera.ViewHeightAt(5.0), 1e-15);
    EXPECT_NEAR(4.0, camera.ViewWidthAt(5.0), 1e-15);
    camera.SetHorizontalOffsetFrom(5.0, 1.0);
    camera.SetVerticalOffsetFrom(5.0, -0.75);
    EXPECT_NEAR(0.25, camera.horizontalOffset, 1e-15);
    EXPECT_NEAR(-0.25, camera.verticalOffset, 1e-15);
  }
}
