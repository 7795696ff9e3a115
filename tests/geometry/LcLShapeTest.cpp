#include "LcLGeometryTesting.h"
#include "geometry/LcLBox.h"
#include "geometry/LcLPlane.h"

TEST(LcLVector, CrossNormaliseAndTolerance) {
  EXPECT_EQ(LcLVector3f(-3, 6, -3), LcLVector3f(1, 2, 3).Cross(LcLVector3f(4, 5, 6)));
  LcLVector3f zero;
  EXPECT_EQ(0.0, zero.Normalise());
  EXPECT_EQ(LcLVector3f(), zero);  // no NaN from 0 / 0
  EXPECT_TRUE(LcLVector3f(1, 2, 3).Equals(LcLVector3f(1.5, 2, 2.5), 0.5));  // the tolerance itself passes
  EXPECT_FALSE(LcLVector3f(1, 2, 3).Equals(LcLVector3f(1, NAN, 3), 1e300));
  LcLBox3f box;
  box.Extend(LcLBox3f());
  EXPECT_TRUE(box.IsEmpty());
  box.Extend(LcLPoint3f(1, -2, 3));
  box.Extend(LcLBox3f(LcLPoint3f(-1, 0, 0), LcLPoint3f(0, 4, 1)));
  EXPECT_EQ(LcLPoint3f(-1, -2, 0), box.min);
  EXPECT_EQ(LcLPoint3f(1, 4, 3), box.max);
}

TEST(LcLLine, KeepsThePointNearestTheOrigin) {
  LcLRandom random;
  for (int i = 0; i < 50; ++i) {
    LcLPoint3f through = LcLPoint3f() + random.Vector(100.0);
    LcLLine line(through, random.Vector(5.0));
    EXPECT_NEAR(1.0, line.direction.Length(), 1e-15);
    EXPECT_NEAR(0.0, line.point.AsVector().Dot(line.direction), 1e-12);
    EXPECT_VEC_NEAR(through, line.ClosestPoint(through), 1e-11);  // still on the line
  }
}

TEST(LcLPlane, IntersectsLinesAndRefusesParallelOnes) {
  LcLPlane plane(LcLVector3f(0, 0, 2), LcLPoint3f(5, 5, 3));  // z = 3, normal not unit
  EXPECT_EQ(6.0, plane.distance);
  LcLPoint3f hit(9, 9, 9);
  ASSERT_TRUE(plane.Intersect(LcLLine(LcLPoint3f(1, 1, 0), LcLVector3f(1, 0, 1)), hit));
  EXPECT_VEC_NEAR(LcLPoint3f(4, 1, 3), hit, 1e-14);
  EXPECT_FALSE(plane.Intersect(LcLLine(LcLPoint3f(0, 0, 1), LcLVector3f(1, 1, 0)), hit));
  EXPECT_VEC_NEAR(LcLPoint3f(4, 1, 3), hit, 1e-14);  // left alone
}
