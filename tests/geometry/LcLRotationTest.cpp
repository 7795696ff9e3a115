#include "LcLGeometryTesting.h"
#include "geometry/LcLRotation.h"

namespace {

// Textbook quaternion algebra, independent of the class: q ⊗ (v, 0) ⊗ q*.
struct Quaternion {
  double w, x, y, z;
};
Quaternion Hamilton(const Quaternion& a, const Quaternion& b) {
  return {a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z, a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
          a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x, a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}
LcLVector3f Sandwich(const LcLRotation& q, const LcLVector3f& v) {
  Quaternion r = Hamilton(Hamilton({q.w, q.x, q.y, q.z}, {0.0, v.x, v.y, v.z}), {q.w, -q.x, -q.y, -q.z});
  return LcLVector3f(r.x, r.y, r.z);
}

bool SameRotation(const LcLRotation& a, const LcLRotation& b, double tolerance) {
  return a.Equals(b, tolerance) || a.Equals(LcLRotation(-b.x, -b.y, -b.z, -b.w), tolerance);
}

std::string Text(const LcLRotation& q) {
  LcUString text;
  EXPECT_TRUE(q.GetText(text));
  return std::string(text.Get(), text.Get() + text.Length());
}

}  // namespace

TEST(LcLRotation, QuaternionMatrixAndProductAgree) {
  LcLRandom random;
  for (int i = 0; i < 200; ++i) {
    LcLVector3f axis = random.UnitVector();
    double angle = random.Uniform(-kPi, kPi);
    LcLRotation a(axis, angle), b(random.UnitVector(), random.Uniform(-kPi, kPi));
    LcLVector3f v = random.Vector(10.0);
    LcLVector3f expected = AxisAngleMatrix(axis, angle).Transform(v);
    EXPECT_VEC_NEAR(expected, Sandwich(a, v), 1e-13);
    EXPECT_VEC_NEAR(expected, a.Rotate(v), 1e-13);
    EXPECT_VEC_NEAR(b.Rotate(a.Rotate(v)), (a * b).Rotate(v), 1e-12);  // a, then b
    EXPECT_TRUE((a * b).GetMatrix().Equals(a.GetMatrix() * b.GetMatrix(), 1e-14));
    EXPECT_TRUE(SameRotation(a, LcLRotation::FromMatrix(a.GetMatrix()), 1e-14));
  }
  // Near half turns the trace is small and another diagonal entry leads.
  for (const LcLVector3f& axis : {LcLVector3f(1, 0, 0), LcLVector3f(0, 1, 0), LcLVector3f(0, 0, 1), LcLVector3f(1, 1, 0)}) {
    LcLRotation q(axis, 3.1);
    EXPECT_TRUE(SameRotation(q, LcLRotation::FromMatrix(q.GetMatrix()), 1e-14));
  }
  LcLRotation p = LcLRotation(0, 0, 2, 2) * LcLRotation(0, 0, 2, 2);  // too long, renormalised
  EXPECT_TRUE(SameRotation(LcLRotation(0, 0, 1, 0), p, 1e-15));
}

TEST(LcLRotation, BetweenTakesOneVectorOntoTheOther) {
  LcLRandom random;
  EXPECT_EQ(LcLRotation(), LcLRotation::Between(LcLVector3f(0, 1, 0), LcLVector3f(0, 1, 0)));
  // Along x the first helper axis is useless, so y's is taken.
  EXPECT_EQ(LcLRotation(0, 0, 1, 0), LcLRotation::Between(LcLVector3f(1, 0, 0), LcLVector3f(-1, 0, 0)));
  for (int i = 0; i < 100; ++i) {
    LcLVector3f a = random.UnitVector(), b = i % 10 ? random.UnitVector() : -a;
    LcLRotation q = LcLRotation::Between(a, b);
    EXPECT_VEC_NEAR(b, q.Rotate(a), 1e-13);
    if (i % 10 == 0) {
      EXPECT_EQ(0.0, q.w);  // opposite: a half turn
    }
  }
  LcLVector3f axis;
  double angle;
  LcLRotation(LcLVector3f(0, 3, 4), 1.25).GetAxisAngle(axis, angle);
  EXPECT_VEC_NEAR(LcLVector3f(0, 0.6, 0.8), axis, 1e-15);
  EXPECT_NEAR(1.25, angle, 1e-15);
  LcLRotation(1e-11, 0, 0, 1).GetAxisAngle(axis, angle);
  EXPECT_EQ(LcLVector3f(0, 0, 1), axis);
  EXPECT_EQ(0.0, angle);
}

TEST(LcLRotation, EulerAnglesRoundTripAwayFromThePoles) {
  LcLRandom random;
  for (int i = 0; i < 300; ++i) {
    double ax = random.Uniform(-3.1, 3.1), ay = random.Uniform(-1.5, 1.5), az = random.Uniform(-3.1, 3.1);
    LcLRotation q = LcLRotation::FromEuler(ax, ay, az);
    // z first, then y, then x, each about the fixed axes.
    LcLMatrix3 expected = AxisAngleMatrix(LcLVector3f(0, 0, 1), az) * AxisAngleMatrix(LcLVector3f(0, 1, 0), ay) *
                          AxisAngleMatrix(LcLVector3f(1, 0, 0), ax);
    EXPECT_TRUE(q.GetMatrix().Equals(expected, 1e-14));
    double ex, ey, ez;
    EXPECT_TRUE(q.GetEuler(ex, ey, ez));
    EXPECT_NEAR(ax, ex, 1e-12);
    EXPECT_NEAR(ay, ey, 1e-12);
    EXPECT_NEAR(az, ez, 1e-12);
  }
  EXPECT_EQ("(5.7296, 11.4592, 17.1887)", Text(LcLRotation::FromEuler(0.1, 0.2, 0.3)));
}

TEST(LcLRotation, EulerAnglesOfSingleTurnsAndAtThePoles) {
  struct Case {
    LcLVector3f axis;
    double angle;
    const char* text;
  } cases[] = {
      {LcLVector3f(-1, 0, 0), 0.5, "(-28.6479, 0.0000, 0.0000)"},
      {LcLVector3f(1, 0, 0), 1.5 * kPi, "(-90.0000, 0.0000, 0.0000)"},  // above pi wraps round
      {LcLVector3f(0, 1, 0), -2.0, "(0.0000, -114.5916, 0.0000)"},      // beyond asin's range
      {LcLVector3f(0, 0, 1), 0.5 * kPi, "(0.0000, 0.0000, 90.0000)"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.text, Text(LcLRotation(c.axis, c.angle)));

  for (double ay : {0.5 * kPi, -0.5 * kPi, 0.5 * kPi * (1.0 - 1e-7)}) {
    LcLRotation q = LcLRotation::FromEuler(0.4, ay, -0.9);
    double ex, ey, ez;
    q.GetEuler(ex, ey, ez);
    EXPECT_EQ(0.0, ex);
    EXPECT_EQ(ay > 0 ? 0.5 * kPi : -0.5 * kPi, ey);
    // The x turn went into z: the same rotation, to pole accuracy.
    EXPECT_TRUE(LcLRotation::FromEuler(ex, ey, ez).GetMatrix().Equals(q.GetMatrix(), 1e-6));
  }
}
