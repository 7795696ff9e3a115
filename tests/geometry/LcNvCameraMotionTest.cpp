#include "LcLGeometryTesting.h"
#include "geometry/LcNvCamera.h"

namespace {

LcNvCamera RandomCamera(LcLRandom& random) {
  LcNvCamera camera;
  camera.position = LcLPoint3f() + random.Vector(20.0);
  camera.rotation = LcLRotation(random.UnitVector(), random.Uniform(-kPi, kPi));
  return camera;
}

}  // namespace

TEST(LcNvCameraMotion, SetViewDirectionTurnsTheShortestWay) {
  LcLRandom random;
  for (int i = 0; i < 50; ++i) {
    LcNvCamera camera = RandomCamera(random);
    const LcNvCamera before = camera;
    LcLVector3f wanted = random.Vector(3.0);
    camera.SetViewDirection(wanted);
    EXPECT_VEC_NEAR(wanted.Normalised(), camera.ViewDirection(), 1e-13);
    // The turn is about the axis across both directions, so the camera's
    // other axes keep their components along it.
    LcLVector3f across = before.ViewDirection().Cross(wanted).Normalised();
    for (const LcLVector3f& local : {LcLVector3f(1, 0, 0), LcLVector3f(0, 1, 0)}) {
      EXPECT_NEAR(before.rotation.Rotate(local).Dot(across), camera.rotation.Rotate(local).Dot(across), 1e-13);
    }
  }
  LcNvCamera camera;
  camera.SetViewDirection(LcLVector3f());
  camera.LookAt(camera.position);
  EXPECT_EQ(LcLRotation(), camera.rotation);  // neither gives a direction
  camera.LookAt(LcLPoint3f(3, 4, 1));
  EXPECT_VEC_NEAR(LcLVector3f(0.6, 0.8, 0), camera.ViewDirection(), 1e-15);
}

TEST(LcNvCameraMotion, LookAtKeepingOffsetPutsThePointAtTheOffsetCentre) {
  LcLRandom random;
  for (int i = 0; i < 30; ++i) {
    LcNvCamera camera = RandomCamera(random);
    camera.horizontalOffset = 0.3;
    camera.verticalOffset = -0.2;
    LcLPoint3f point = camera.position + camera.ViewDirection() * 6.0 + random.Vector(2.0);
    camera.LookAtKeepingOffset(point);
    // The offset view's centre is the middle of the screen.
    EXPECT_VEC_NEAR(LcLPoint2f(0.5, 0.5), camera.ScreenBounds(LcLBox3f(point, point)).min, 1e-12);
  }
  // A quarter turn about the line of sight, offset sideways.
  LcNvCamera turned;
  turned.position = LcLPoint3f();
  turned.rotation = LcLRotation(LcLVector3f(0, 0, 1), kPi / 2);
  turned.horizontalOffset = 0.1;
  LcNvCamera level = turned;
  level.LookAtKeepingOffset(LcLPoint3f(3, 0, 0));  // depth 0: nothing happens
  EXPECT_EQ(turned.rotation, level.rotation);
  // Behind the eye: the turn is taken back first, so the roll comes out the
  // other way round, and the point lies on the offset centre's line, behind.
  LcLPoint3f behind(0.2, 0.1, 5);
  LcNvCamera back = turned;
  back.LookAtKeepingOffset(behind);
  EXPECT_NEAR(-1.0, turned.UpVector().x, 1e-12);
  EXPECT_GT(back.UpVector().x, 0.99);
  EXPECT_LT(back.Depth(behind), 0.0);
  EXPECT_VEC_NEAR(LcLPoint2f(0.5, 0.5), back.ScreenBounds(LcLBox3f(behind, behind)).min, 1e-12);
}

TEST(LcNvCameraMotion, UpVectorAndFrame) {
  LcLRandom random;
  for (int i = 0; i < 50; ++i) {
    LcNvCamera camera = RandomCamera(random);
    LcLVector3f view = camera.ViewDirection(), up = random.Vector(5.0);
    camera.SetUpVector(up);
    EXPECT_VEC_NEAR(view, camera.ViewDirection(), 1e-13);
    EXPECT_VEC_NEAR((up - view * up.Dot(view)).Normalised(), camera.UpVector(), 1e-13);
  }
  LcNvCamera camera;
  camera.SetUpVector(LcLVector3f(0, 0, 3));  // along the view: nothing to align with
  EXPECT_EQ(LcLRotation(), camera.rotation);
  camera.SetFrame(LcLVector3f(2, 0, 0), LcLVector3f(1, 0, 1));
  EXPECT_VEC_NEAR(LcLVector3f(1, 0, 0), camera.ViewDirection(), 1e-15);
  EXPECT_VEC_NEAR(LcLVector3f(0, 0, 1), camera.UpVector(), 1e-15);
  EXPECT_VEC_NEAR(LcLVector3f(0, -1, 0), camera.rotation.Rotate(LcLVector3f(1, 0, 0)), 1e-15);  // right-handed
}

TEST(LcNvCameraMotion, TransformMovesWithTheWorld) {
  LcLRandom random;
  for (int i = 0; i < 30; ++i) {
    LcNvCamera camera = RandomCamera(random);
    LcLMatrix3 turn = AxisAngleMatrix(random.UnitVector(), 1.1);
    LcLMatrix4 motion(turn, random.Vector(10.0));
    LcNvCamera moved = camera;
    moved.Transform(motion);
    EXPECT_VEC_NEAR(motion.TransformPoint(camera.position), moved.position, 1e-12);
    EXPECT_VEC_NEAR(turn.Transform(camera.ViewDirection()), moved.ViewDirection(), 1e-13);
    EXPECT_VEC_NEAR(turn.Transform(camera.UpVector()), moved.UpVector(), 1e-13);
  }
  // An orthographic view scales with the mean of the stretches; perspective doesn't.
  struct Case {
    int projection;
    double stretch[3], factor;
  } cases[] = {{1, {2, 2, 2}, 2.0}, {1, {-1, 1, 1}, 1.0}, {1, {1, 2, 6}, 3.0}, {0, {2, 2, 2}, 1.0}};
  for (const Case& c : cases) {
    LcNvCamera camera;
    camera.projection = c.projection;
    camera.Transform(LcLMatrix4(LcLMatrix3({{c.stretch[0], 0, 0}, {0, c.stretch[1], 0}, {0, 0, c.stretch[2]}}), LcLVector3f(1, 1, 1)));
    EXPECT_NEAR(LcNvCamera().height * c.factor, camera.height, 1e-14);
    EXPECT_NEAR(c.factor, camera.nearDistance, 1e-14);
    EXPECT_NEAR(10.0 * c.factor, camera.farDistance, 1e-13);
  }
}
