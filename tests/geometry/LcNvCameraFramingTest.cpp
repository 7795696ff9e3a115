#include <cfloat>

#include "LcLGeometryTesting.h"
#include "geometry/LcNvCamera.h"

namespace {

const int A = LcNvCamera::eCLIP_AUTOMATIC, C = LcNvCamera::eCLIP_CLAMPED, F = LcNvCamera::eCLIP_FIXED;
// Depths 5 to 10 from the default camera at (0, 0, 1); padded, 4.995 to 10.01.
const LcLBox3f kAhead(LcLPoint3f(-1, -1, -9), LcLPoint3f(1, 1, -4));

LcNvCamera RandomCamera(LcLRandom& random, int projection) {
  LcNvCamera camera;
  camera.projection = projection;
  camera.position = LcLPoint3f() + random.Vector(20.0);
  camera.rotation = LcLRotation(random.UnitVector(), random.Uniform(-kPi, kPi));
  camera.height = projection == LcNvCamera::ePERSPECTIVE ? 0.8 : 5.0;
  camera.aspect = 1.25;
  return camera;
}

LcLPoint2f OnScreen(const LcNvCamera& camera, const LcLPoint3f& p) { return camera.ScreenBounds(LcLBox3f(p, p)).min; }

double LargerSide(const LcLBox2f& box) { return box.Size().x > box.Size().y ? box.Size().x : box.Size().y; }

}  // namespace

TEST(LcNvCameraFraming, FitClipPlanes) {
  struct Case {
    const char* name;
    int projection;
    LcLBox3f box;
    int nearMode;
    double nearValue;
    int farMode;
    double farValue, minRatio, nearDistance, farDistance;
  } cases[] = {
      {"automatic", 0, kAhead, A, 0, A, 0, 0.001, 4.995, 10.01},
      {"empty box falls back", 0, LcLBox3f(), A, 0, A, 0, 0.001, 1.0, 10.0},
      {"empty box, clamped near", 0, LcLBox3f(), C, 2, A, 0, 0.001, 2.0, 20.0},
      {"empty box, fixed far", 0, LcLBox3f(), A, 0, F, 50, 0.001, 1.0, 50.0},
      {"box behind falls back", 0, LcLBox3f(LcLPoint3f(-1, -1, 2), LcLPoint3f(1, 1, 3)), A, 0, A, 0, 0.001, 1.0, 10.0},
      {"fixed near", 0, kAhead, F, 0.5, A, 0, 0.001, 0.5, 10.01},
      {"crossing values are ignored", 0, kAhead, F, 5, F, 5, 0.001, 4.995, 10.01},
      {"non-positive values are ignored", 0, kAhead, F, -1, F, 0, 0.001, 4.995, 10.01},
      {"ratio pulls near in", 0, kAhead, A, 0, A, 0, 0.9, 9.009, 10.01},
      {"ratio, clamped near pulls far in", 0, kAhead, C, 3, A, 0, 0.9, 4.995, 4.995 / 0.9},
      {"ratio, fixed near, clamped far", 0, kAhead, F, 3, C, 4, 0.9, 3, 4},
      {"ratio, fixed far", 0, kAhead, A, 0, F, 8, 0.9, 7.2, 8},
      {"ratio, both clamped, near already far enough", 0, kAhead, C, 9.5, C, 20, 0.9, 9.5, 10.01},
      {"fixed far on the near depth halves near", 0, kAhead, A, 0, F, 5 * 0.999, 0.001, 5 * 0.999 * 0.5, 5 * 0.999},
      {"ratio, fixed near", 0, kAhead, F, 3, A, 0, 0.9, 3, 3 / 0.9},
      {"ratio, clamped near, fixed far", 0, kAhead, C, 7.5, F, 8, 0.9, 8 * 0.9, 8},
      {"ratio, clamped near under the ratio, fixed far", 0, kAhead, C, 7, F, 8, 0.9, 7, 8},
      {"ratio, clamped near beyond the pulled-in depth", 0, kAhead, C, 9.5, A, 0, 0.9, 10.01 * 0.9, 10.01},
      {"ratio, both clamped, near too close", 0, kAhead, C, 3, C, 6, 0.9, 4.995, 6},
      {"orthographic", 1, kAhead, A, 0, A, 0, 0.001, 4.995, 10.01},
      {"orthographic, clamping has no say", 1, kAhead, C, 7, C, 8, 0.001, 4.995, 10.01},
      {"orthographic flat through the eye", 1, LcLBox3f(LcLPoint3f(-1, -1, 1), LcLPoint3f(1, 1, 1)), A, 0, A, 0, 0.001, -1, 1},
      {"orthographic may clip behind", 1, LcLBox3f(LcLPoint3f(-1, -1, 0), LcLPoint3f(1, 1, 2)), A, 0, A, 0, 0.001, -1.001, 1.001},
      {"orthographic fixed near beyond", 1, kAhead, F, 20, A, 0, 0.001, 20, 21},
      {"orthographic fixed far before", 1, kAhead, A, 0, F, 3, 0.001, 2, 3},
      {"orthographic empty box keeps its padded -1", 1, LcLBox3f(), A, 0, A, 0, 0.001, -1.001, -0.999},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LcNvCamera camera;
    camera.projection = c.projection;
    camera.FitClipPlanes(c.box, c.nearMode, c.nearValue, c.farMode, c.farValue, c.minRatio);
    EXPECT_NEAR(c.nearDistance, camera.nearDistance, 1e-12);
    EXPECT_NEAR(c.farDistance, camera.farDistance, 1e-12);
  }
}

TEST(LcNvCameraFraming, ScreenBounds) {
  LcNvCamera camera;  // aspect 1: at depth 5 the view is 10 tan(height / 2) across
  double half = std::tan(camera.height * 0.5) * 5.0;
  LcLBox3f section(LcLPoint3f(-half, -half, -4), LcLPoint3f(half, half, -4));
  EXPECT_VEC_NEAR(LcLPoint2f(0, 0), camera.ScreenBounds(section).min, 1e-14);
  EXPECT_VEC_NEAR(LcLPoint2f(1, 1), camera.ScreenBounds(section).max, 1e-14);
  LcLBox2f quarter = camera.ScreenBounds(LcLBox3f(LcLPoint3f(0, 0, -4), LcLPoint3f(half, half, -4)), 2.0);
  EXPECT_VEC_NEAR(LcLPoint2f(0.75, 1), quarter.max, 1e-14);  // a view twice as wide
  EXPECT_TRUE(camera.ScreenBounds(LcLBox3f()).IsEmpty());
  camera.farDistance = camera.nearDistance;
  EXPECT_TRUE(camera.ScreenBounds(section).IsEmpty());
}

TEST(LcNvCameraFraming, PanToAndFitScreenRect) {
  LcLRandom random;
  for (int i = 0; i < 30; ++i) {
    LcNvCamera camera = RandomCamera(random, i % 2);
    camera.horizontalOffset = 0.1;
    camera.verticalOffset = 0.3;
    LcLPoint3f point = camera.position + camera.ViewDirection() * 7.0 + random.Vector(3.0);
    double depth = camera.Depth(point);
    camera.PanTo(point);
    EXPECT_NEAR(depth, camera.Depth(point), 1e-12);
    EXPECT_VEC_NEAR(LcLPoint2f(0.5, 0.5), OnScreen(camera, point), 1e-12);

    // A flat rectangle facing the camera, so its margins agree: it fills the view.
    LcLVector3f right = camera.rotation.Rotate(LcLVector3f(1, 0, 0)) * 2.0, up = camera.UpVector();
    LcLPoint3f corners[2] = {point - right - up, point + right + up};
    LcLBox2f rect(OnScreen(camera, corners[0]), OnScreen(camera, corners[0]));
    rect.Extend(OnScreen(camera, corners[1]));
    camera.FitScreenRect(rect, depth, depth);
    LcLBox2f after(OnScreen(camera, corners[0]), OnScreen(camera, corners[0]));
    after.Extend(OnScreen(camera, corners[1]));
    EXPECT_NEAR(1.0 / 1.01, LargerSide(after), 1e-12);
    EXPECT_VEC_NEAR(LcLPoint2f(0.5, 0.5), after.Center(), 1e-12);
  }
  LcNvCamera camera;
  camera.PanTo(LcLPoint3f(3, 3, 5));  // behind the eye
  EXPECT_EQ(LcNvCamera().position, camera.position);
}

TEST(LcNvCameraFraming, ZoomToBox) {
  LcLRandom random;
  for (int i = 0; i < 40; ++i) {
    LcNvCamera camera = RandomCamera(random, i % 2);
    if (i % 4 >= 2) {  // an offset view frames the box just the same
      camera.horizontalOffset = 0.2;
      camera.verticalOffset = -0.1;
    }
    LcLPoint3f centre = camera.position + camera.ViewDirection() * random.Uniform(5, 50) + random.Vector(5);
    LcLVector3f half(random.Uniform(0.1, 4), random.Uniform(0.1, 4), random.Uniform(0.1, 4));
    LcLBox3f box(centre - half, centre + half);
    camera.ZoomToBox(box);
    LcLBox2f bounds = camera.ScreenBounds(box);
    EXPECT_TRUE(bounds.min.x >= -1e-12 && bounds.min.y >= -1e-12 && bounds.max.x <= 1 + 1e-12 && bounds.max.y <= 1 + 1e-12);
    if (camera.IsPerspective()) {
      EXPECT_GT(LargerSide(bounds), 0.45);  // nearer parts look bigger: a looser fit
    } else {
      EXPECT_NEAR(1.0 / 1.01, LargerSide(bounds), 1e-12);
      EXPECT_VEC_NEAR(LcLPoint2f(0.5, 0.5), bounds.Center(), 1e-12);
    }
  }
  LcNvCamera camera;
  camera.ZoomToBox(LcLBox3f(LcLPoint3f(3, -2, -5), LcLPoint3f(3, -2, -5)));  // a point: onto the line of sight
  EXPECT_EQ(LcLPoint3f(3, -2, 1), camera.position);
  camera.ZoomToBox(LcLBox3f());
  camera.nearDistance = 20;
  camera.ZoomToBox(kAhead);
  EXPECT_EQ(LcLPoint3f(3, -2, 1), camera.position);
}

TEST(LcNvCameraFraming, BadNumbersNeverCrash) {
  std::vector<LcNvCamera> cameras;
  for (double bad : {double(NAN), double(INFINITY), -double(INFINITY), DBL_MAX, 0.0}) {
    for (double LcNvCamera::*field : {&LcNvCamera::aspect, &LcNvCamera::height, &LcNvCamera::nearDistance,
                                      &LcNvCamera::farDistance, &LcNvCamera::verticalOffset, &LcNvCamera::horizontalOffset}) {
      cameras.emplace_back();
      cameras.back().*field = bad;
    }
    cameras.emplace_back();
    cameras.back().position.y = bad;
    cameras.emplace_back();
    cameras.back().rotation = LcLRotation(bad, 0, bad, bad);
  }
  LcLWarningLog warnings;  // singular matrices may be reported, never fatal
  for (int projection : {0, 1}) {
    for (LcNvCamera camera : cameras) {
      camera.projection = projection;
      for (const LcLBox3f& box : {kAhead, LcLBox3f(), LcLBox3f(LcLPoint3f(NAN, 0, 0), LcLPoint3f(1, INFINITY, 1))}) {
        LcLMatrix4 matrix;
        camera.GetViewProjection(matrix);
        camera.ScreenBounds(box);
        camera.FitClipPlanes(box, C, 1, C, 100, 0.001);
        camera.ZoomToBox(box);
        camera.FitScreenRect(LcLBox2f(LcLPoint2f(0.2, 0.2), LcLPoint2f(0.6, 0.9)), 3, 8);
        camera.PanTo(LcLPoint3f(1, 2, -3));
        camera.LookAtKeepingOffset(LcLPoint3f(1, 1, -5));
        camera.SetViewDirection(LcLVector3f(INFINITY, 1, 0));
        camera.SetUpVector(LcLVector3f(NAN, 1, 0));
        camera.SetExtents(0, 0, 0);
        camera.SetVerticalOffsetFrom(NAN, 1);
        camera.Transform(LcLMatrix4({{NAN, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}));
      }
    }
  }
}

// What bad numbers come out as: the validity tests let NaN through into the
// arithmetic, and only the comparisons that NaN fails stop anything.
TEST(LcNvCameraFraming, BadNumbersGiveTheseValues) {
  struct Case {
    const char* name;
    int projection;
    double LcNvCamera::*field;
    double value;
    bool valid;
    double top, right;  // NaN where the frustum side is NaN
  } cases[] = {
      {"NaN aspect", 0, &LcNvCamera::aspect, NAN, true, std::tan(0.785398 * 0.5), NAN},
      {"NaN height", 0, &LcNvCamera::height, NAN, true, NAN, NAN},
      {"NaN far", 0, &LcNvCamera::farDistance, NAN, true, std::tan(0.785398 * 0.5), std::tan(0.785398 * 0.5)},
      // inf × an offset of 0 is NaN.
      {"infinite height, orthographic", 1, &LcNvCamera::height, INFINITY, true, NAN, NAN},
      {"near at minus infinity", 0, &LcNvCamera::nearDistance, -INFINITY, false, 0, 0},
      {"near at minus infinity, orthographic", 1, &LcNvCamera::nearDistance, -INFINITY, true, 0.785398 * 0.5,
       0.785398 * 0.5},
      {"infinite far", 0, &LcNvCamera::farDistance, INFINITY, true, std::tan(0.785398 * 0.5), std::tan(0.785398 * 0.5)},
      {"infinite near", 0, &LcNvCamera::nearDistance, INFINITY, false, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LcNvCamera camera;
    camera.projection = c.projection;
    camera.*c.field = c.value;
    double left = 0, right = 0, bottom = 0, top = 0;
    EXPECT_EQ(c.valid, camera.GetFrustum(left, right, bottom, top));
    for (const auto& side : {std::make_pair(c.top, top), std::make_pair(-c.top, bottom), std::make_pair(c.right, right),
                             std::make_pair(-c.right, left)}) {
      if (std::isnan(side.first))
        EXPECT_TRUE(std::isnan(side.second)) << side.second;
      else
        EXPECT_EQ(side.first, side.second);
    }
  }

  // A box with a NaN corner isn't empty. Looking down z, only the near corner
  // takes the NaN (NaN × 0); the clamped near then keeps its own value.
  const LcLBox3f bad(LcLPoint3f(NAN, 0, -5), LcLPoint3f(1, 1, -4));
  LcNvCamera clipped;
  clipped.FitClipPlanes(bad, C, 2, C, 100, 0.001);
  EXPECT_EQ(2.0, clipped.nearDistance);
  EXPECT_NEAR(6 * 1.001, clipped.farDistance, 1e-12);
  // Its centre and size are NaN, neither positive nor zero: the camera stays.
  LcNvCamera zoomed;
  zoomed.ZoomToBox(bad);
  EXPECT_EQ(LcNvCamera().position, zoomed.position);
  EXPECT_EQ(LcNvCamera().height, zoomed.height);
  // A NaN point is never the position, so the view direction takes the NaN.
  LcNvCamera looking;
  looking.LookAt(LcLPoint3f(NAN, 0, 0));
  EXPECT_TRUE(std::isnan(looking.ViewDirection().x));
}
