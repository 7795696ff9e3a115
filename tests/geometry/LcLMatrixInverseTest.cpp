#include "LcLGeometryTesting.h"
#include "geometry/LcLMatrix2.h"
#include "geometry/LcLMatrix4.h"

namespace {

// Random entries and a dominant diagonal keep the condition number small.
template <typename Matrix, int N>
Matrix WellConditioned(LcLRandom& random) {
  Matrix a;
  for (int r = 0; r < N; ++r) {
    for (int c = 0; c < N; ++c) a.m[r][c] = random.Uniform(-1.0, 1.0) + (r == c ? 2.0 * N : 0.0);
  }
  return a;
}

template <typename Matrix>
void ExpectInverts(const Matrix& a, double tolerance = 1e-13) {
  LcLWarningLog warnings;
  Matrix inverse;
  ASSERT_TRUE(a.GetInverse(inverse));
  EXPECT_TRUE((a * inverse).Equals(Matrix(), tolerance));
  EXPECT_TRUE((inverse * a).Equals(Matrix(), tolerance));
  EXPECT_TRUE(warnings.entries.empty());
}

template <typename Matrix>
void ExpectSingular(const char* name, const Matrix& a, int id) {
  SCOPED_TRACE(name);
  LcLWarningLog warnings;
  Matrix inverse = Matrix() * 7.0;
  EXPECT_FALSE(a.GetInverse(inverse));
  EXPECT_TRUE(inverse.IsIdentity());
  ASSERT_EQ(1u, warnings.entries.size());
  EXPECT_EQ(&LcLMatrix::component, warnings.entries[0].component);
  EXPECT_EQ(id, warnings.entries[0].id);
  EXPECT_EQ(static_cast<const void*>(&a), warnings.entries[0].data);
  EXPECT_EQ("Singular Matrix", warnings.entries[0].message);
}

}  // namespace

TEST(LcLMatrixInverse, WellConditionedRandomMatricesInvert) {
  LcLRandom random;
  for (int i = 0; i < 200; ++i) {
    ExpectInverts(WellConditioned<LcLMatrix2, 2>(random));
    ExpectInverts(WellConditioned<LcLMatrix3, 3>(random));
    LcLMatrix4 general = WellConditioned<LcLMatrix4, 4>(random);
    ExpectInverts(general);                                                     // LU
    ExpectInverts(LcLMatrix4(general.Linear(), random.Vector(100.0)), 1e-12);  // affine
    LcLMatrix4 reversed;  // every pivot is a row swap away
    for (int r = 0; r < 4; ++r) {
      for (int c = 0; c < 4; ++c) reversed.m[r][c] = general.m[3 - r][c];
    }
    ExpectInverts(reversed);
  }
}

TEST(LcLMatrixInverse, SingularMatricesGiveIdentityAndWarn) {
  ExpectSingular("2x2, det 1e-13", LcLMatrix2({{1e-13, 0}, {0, 1}}), 1);
  ExpectSingular("3x3 zero", LcLMatrix3({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}), 2);
  ExpectSingular("3x3 twin rows", LcLMatrix3({{1, 2, 3}, {1, 2, 3}, {4, 5, 6}}), 2);
  ExpectSingular("3x3 NaN row", LcLMatrix3({{NAN, NAN, NAN}, {0, 1, 0}, {0, 0, 1}}), 2);
  ExpectSingular("4x4 zero", LcLMatrix4({{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}}), 3);
  ExpectSingular("4x4 affine, z squashed", LcLMatrix4({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 0, 0}, {5, 6, 7, 1}}), 3);
}

TEST(LcLMatrixInverse, CancellingProductsFallBackToLU) {
  // The determinant is 1e-16 of its products, so the direct method gives
  // up; elimination is exact here and still finds the inverse.
  const double nudge = std::nextafter(1e8, 2e8) - 1e8;
  LcLMatrix3 a({{1e8, 1e8, 0}, {1e8, 1e8 + nudge, 0}, {0, 0, 1}});
  LcLMatrix3 inverse;
  EXPECT_FALSE(a.GetDirectInverse(inverse));
  ExpectInverts(a, 1e-8);
  ASSERT_TRUE(a.GetInverse(inverse));
  EXPECT_NEAR((1e8 + nudge) / (1e8 * nudge), inverse.m[0][0], 1e-8 * inverse.m[0][0]);
  // The same rows upside down need pivoting.
  LcLMatrix3 swapped({{0, 0, 1}, {1e8, 1e8 + nudge, 0}, {1e8, 1e8, 0}});
  EXPECT_FALSE(swapped.GetDirectInverse(inverse));
  ExpectInverts(swapped, 1e-8);
}

TEST(LcLMatrixInverse, InvertingInPlaceMatchesACopy) {
  // Every path must read all of its input before it writes.
  auto expectSame = [](auto a) {
    decltype(a) copy;
    ASSERT_TRUE(a.GetInverse(copy));
    ASSERT_TRUE(a.GetInverse(a));
    EXPECT_EQ(copy, a);
  };
  LcLRandom random;
  LcLMatrix4 general = WellConditioned<LcLMatrix4, 4>(random);
  const double nudge = std::nextafter(1e8, 2e8) - 1e8;
  expectSame(general.Linear());                                                 // direct
  expectSame(LcLMatrix3({{0, 0, 1}, {1e8, 1e8 + nudge, 0}, {1e8, 1e8, 0}}));    // LU
  expectSame(general);                                                          // LU
  expectSame(LcLMatrix4(general.Linear(), random.Vector(100.0)));               // affine
}

TEST(LcLMatrix, ProductsDeterminantsAndCramer) {
  EXPECT_EQ(LcLMatrix2({{19, 22}, {43, 50}}), LcLMatrix2({{1, 2}, {3, 4}}) * LcLMatrix2({{5, 6}, {7, 8}}));
  LcLMatrix4 triangular({{2, 9, 9, 9}, {0, 3, 9, 9}, {0, 0, 5, 9}, {0, 0, 0, 7}});
  EXPECT_EQ(2 * 3 * 5 * 7, triangular.Determinant());
  EXPECT_EQ(-2 * 3 * 5 * 7, LcLMatrix4({{0, 0, 5, 9}, {0, 3, 9, 9}, {2, 9, 9, 9}, {0, 0, 0, 7}}).Determinant());  // rows swapped
  // (1, 1, 1, 1) × m = (3, 4, 5, 2): points divide by w, directions ignore it.
  LcLMatrix4 m({{2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 1}, {1, 2, 3, 1}});
  EXPECT_EQ(LcLPoint3f(1.5, 2, 2.5), m.TransformPoint(LcLPoint3f(1, 1, 1)));
  EXPECT_EQ(LcLVector3f(2, 2, 2), m.TransformDirection(LcLVector3f(1, 1, 1)));
  // Cramer's rule fails on an exactly zero determinant only.
  LcLVector2f x;
  ASSERT_TRUE(LcLMatrix2({{1e-13, 0}, {0, 1}}).Solve(LcLVector2f(1e-13, 2), x));
  EXPECT_VEC_NEAR(LcLVector2f(1, 2), x, 1e-12);
  EXPECT_FALSE(LcLMatrix2({{1, 2}, {2, 4}}).Solve(LcLVector2f(1, 1), x));
}
