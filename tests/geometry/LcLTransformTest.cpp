#include <algorithm>

#include "LcLGeometryTesting.h"
#include "geometry/LcLPolarDecomposition.h"
#include "geometry/LcLTransform3f.h"

namespace {

LcLMatrix3 Diagonal(double a, double b, double c) { return LcLMatrix3({{a, 0, 0}, {0, b, 0}, {0, 0, c}}); }

bool IsRotation(const LcLMatrix3& m) {
  return (m * m.Transposed()).Equals(LcLMatrix3(), 1e-13) && std::fabs(m.Determinant() - 1.0) < 1e-13;
}

std::string Text(const LcLTransform3f& t) {
  LcUString text;
  EXPECT_TRUE(t.GetText(text));
  return std::string(text.Get(), text.Get() + text.Length());
}

}  // namespace

TEST(LcLTransform3f, ProductsKeepTheTraitForm) {
  LcLRandom random;
  const LcLTransform3f forms[] = {
      LcLTransform3f(),
      LcLTransform3f::FromTranslation(LcLVector3f(1, -2, 3)),
      LcLTransform3f::FromRotation(LcLRotation(random.UnitVector(), 0.7)),
      LcLTransform3f::FromScale(2.5),
      LcLTransform3f(AxisAngleMatrix(random.UnitVector(), 2.0) * Diagonal(1, 2, 3), LcLVector3f(4, 5, 6)),
      LcLTransform3f(LcLMatrix4({{1, 0, 0, 0.1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {7, 8, 9, 1}})),
  };
  for (const LcLTransform3f& a : forms) {
    for (const LcLTransform3f& b : forms) {
      EXPECT_EQ(a.traits | b.traits, (a * b).traits);
      EXPECT_TRUE((a * b).GetMatrix().Equals(a.GetMatrix() * b.GetMatrix(), 1e-13));
    }
  }
  EXPECT_EQ(23u, forms[4].traits);
  EXPECT_EQ(32u, forms[5].traits);
  EXPECT_EQ("Traits: 10\n(1.0000, 0.0000, 0.0000, 0.0000)\n(0.0000, 1.0000, 0.0000, 0.0000)\n"
            "(0.0000, 0.0000, 1.0000, 0.0000)\n(1.0000, -2.0000, 3.0000, 1.0000)\n",
            Text(forms[1]));
}

TEST(LcLTransform3f, CleanDropsWhatDoesNothingAndWhatIsNotFinite) {
  LcLRotation turn(LcLVector3f(0, 1, 0), 0.3);
  LcLMatrix3 infinite = turn.GetMatrix();
  infinite.m[1][2] = INFINITY;
  LcLMatrix4 badColumn(turn.GetMatrix(), LcLVector3f(1, 2, 3));
  badColumn.m[0][3] = -INFINITY;
  struct Case {
    const char* name;
    LcLTransform3f input;
    uint32_t traits;
    LcLMatrix4 expected;
    const char* warning;
  } cases[] = {
      {"within tolerance of nothing", LcLTransform3f(LcLRotation(LcLVector3f(1, 0, 0), 1e-7).GetMatrix(), LcLVector3f(1e-7, 0, 0)),
       0, LcLMatrix4(), nullptr},
      {"pure rotation", LcLTransform3f(turn.GetMatrix(), LcLVector3f()), 1, LcLMatrix4(turn.GetMatrix(), LcLVector3f()), nullptr},
      {"uniform scale", LcLTransform3f(Diagonal(3, 3, 3), LcLVector3f(1, 2, 3)), 18, LcLMatrix4(Diagonal(3, 3, 3), LcLVector3f(1, 2, 3)), nullptr},
      {"rotation and scale", LcLTransform3f(turn.GetMatrix() * 0.5, LcLVector3f()), 3, LcLMatrix4(turn.GetMatrix() * 0.5, LcLVector3f()), nullptr},
      {"mirror", LcLTransform3f(Diagonal(-1, 1, 1), LcLVector3f()), 3, LcLMatrix4(Diagonal(-1, 1, 1), LcLVector3f()), nullptr},
      {"general scale stays", LcLTransform3f(Diagonal(1, 2, 3), LcLVector3f()), 7, LcLMatrix4(Diagonal(1, 2, 3), LcLVector3f()), nullptr},
      {"projective in name only", LcLTransform3f(LcLMatrix4({{2, 0, 0, 1e-9}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}})), 2,
       LcLMatrix4(Diagonal(2, 2, 2), LcLVector3f()), nullptr},
      {"really projective", LcLTransform3f(LcLMatrix4({{2, 0, 0, 1e-3}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}})), 32,
       LcLMatrix4({{2, 0, 0, 1e-3}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}}), nullptr},
      {"infinite translation", LcLTransform3f(turn.GetMatrix(), LcLVector3f(INFINITY, 0.5, -2)), 1, LcLMatrix4(turn.GetMatrix(), LcLVector3f()),
       "Translation in LcLTransform3f contained non-finite numbers inf 0.500000 -2.000000. Translation component removed."},
      {"infinite linear entry", LcLTransform3f(infinite, LcLVector3f(4, 5, 6)), 16, LcLMatrix4(LcLMatrix3(), LcLVector3f(4, 5, 6)),
       "Linear matrix in LcLTransform3f contained non-finite numbers. Matrix reset to identity"},
      {"infinite fourth column", LcLTransform3f(badColumn), 17, LcLMatrix4(turn.GetMatrix(), LcLVector3f(1, 2, 3)),
       "Fourth column in LcLTransform3f contained non-finite numbers -inf 0.000000 0.000000 1.000000. Matrix set to affine."},
  };
  for (Case& c : cases) {
    SCOPED_TRACE(c.name);
    LcLWarningLog warnings;
    c.input.Clean(1e-6);
    EXPECT_EQ(c.traits, c.input.traits);
    EXPECT_TRUE(c.input.GetMatrix().Equals(c.expected, 1e-12));
    ASSERT_EQ(c.warning ? 1u : 0u, warnings.entries.size());
    if (c.warning) {
      EXPECT_EQ(nullptr, warnings.entries[0].component);
      EXPECT_EQ(-1, warnings.entries[0].id);
      EXPECT_EQ(c.warning, warnings.entries[0].message);
    }
  }
}

TEST(LcLTransform3f, DecompositionRebuildsTheTransform) {
  LcLRandom random;
  for (int i = 0; i < 100; ++i) {
    LcLMatrix3 orientation = AxisAngleMatrix(random.UnitVector(), random.Uniform(-kPi, kPi));
    double s[3] = {random.Uniform(0.1, 10), random.Uniform(0.1, 10), random.Uniform(0.1, 10)};
    bool mirrored = i % 4 == 0;
    LcLMatrix3 linear = orientation.Transposed() * Diagonal(mirrored ? -s[0] : s[0], s[1], s[2]) * orientation *
                        AxisAngleMatrix(random.UnitVector(), random.Uniform(-kPi, kPi));
    LcLVector3f translation = random.Vector(100);
    LcLDecomposedTransform parts;
    LcLTransform3f(linear, translation).GetDecomposed(parts);
    EXPECT_TRUE(parts.GetMatrix().Equals(LcLMatrix4(linear, translation), 1e-11));
    EXPECT_TRUE(IsRotation(parts.rotation.GetMatrix()));
    EXPECT_TRUE(IsRotation(parts.scaleOrientation.GetMatrix()));
    // The factors are the stretches put in; a mirror makes all three negative.
    double found[3] = {parts.scale.x, parts.scale.y, parts.scale.z};
    for (double& f : found) {
      EXPECT_EQ(mirrored, f < 0);
      f = std::fabs(f);
    }
    std::sort(s, s + 3);
    std::sort(found, found + 3);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(s[k], found[k], 1e-11);
  }
}

TEST(LcLPolarDecomposition, DegenerateMapsStillGiveRotations) {
  const LcLMatrix3 maps[] = {LcLMatrix3() * 0.0, AxisAngleMatrix(LcLVector3f(1, 1, 0), 0.5) * Diagonal(2, 3, 0),
                             LcLMatrix3({{1, 2, 3}, {2, 4, 6}, {-1, -2, -3}}), Diagonal(2, 2, 5)};
  for (const LcLMatrix3& linear : maps) {
    LcLPolarDecomposition parts(linear);
    EXPECT_TRUE(IsRotation(parts.rotation));
    EXPECT_TRUE(IsRotation(parts.scaleOrientation));
    LcLMatrix3 rebuilt = parts.scaleOrientation.Transposed() * Diagonal(parts.scale.x, parts.scale.y, parts.scale.z) *
                         parts.scaleOrientation * parts.rotation;
    EXPECT_TRUE(rebuilt.Equals(linear, 1e-12));
  }
  EXPECT_TRUE(LcLPolarDecomposition(LcLMatrix3() * 0.0).rotation.IsIdentity());
}
