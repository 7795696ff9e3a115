#include "geometry/LcLPolarDecomposition.h"

#include <cmath>

// Diagonalises the symmetric matrix a by Jacobi rotations: on return a is
// diagonal and the columns of v are its eigenvectors, with det v = +1.
static void JacobiEigen(double (&a)[3][3], double (&v)[3][3]) {
  static const int pairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) v[r][c] = r == c ? 1.0 : 0.0;
  }
  // Convergence is quadratic; the cap only matters for NaN input.
  for (int sweep = 0; sweep < 32; ++sweep) {
    double off = a[0][1] * a[0][1] + a[0][2] * a[0][2] + a[1][2] * a[1][2];
    double diagonal = a[0][0] * a[0][0] + a[1][1] * a[1][1] + a[2][2] * a[2][2];
    if (!(off > 1e-36 * diagonal)) return;
    for (const auto& pq : pairs) {
      int p = pq[0];
      int q = pq[1];
      if (a[p][q] == 0.0) continue;
      double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
      double t = std::fabs(theta) > 1e150 ? 0.5 / theta
                                          : std::copysign(1.0, theta) / (std::fabs(theta) + std::sqrt(theta * theta + 1.0));
      double c = 1.0 / std::sqrt(t * t + 1.0);
      double s = t * c;
      for (int k = 0; k < 3; ++k) {
        double akp = a[k][p];
        double akq = a[k][q];
        a[k][p] = c * akp - s * akq;
        a[k][q] = s * akp + c * akq;
      }
      for (int k = 0; k < 3; ++k) {
        double apk = a[p][k];
        double aqk = a[q][k];
        a[p][k] = c * apk - s * aqk;
        a[q][k] = s * apk + c * aqk;
      }
      for (int k = 0; k < 3; ++k) {
        double vkp = v[k][p];
        double vkq = v[k][q];
        v[k][p] = c * vkp - s * vkq;
        v[k][q] = s * vkp + c * vkq;
      }
    }
  }
}

// A unit vector across u.
static LcLVector3f Across(const LcLVector3f& u) {
  LcLVector3f axis(0.0, 0.0, 0.0);
  int smallest = 0;
  for (int i = 1; i < 3; ++i) {
    if (std::fabs(u[i]) < std::fabs(u[smallest])) smallest = i;
  }
  axis[smallest] = 1.0;
  return u.Cross(axis).Normalised();
}

LcLPolarDecomposition::LcLPolarDecomposition(const LcLMatrix3& linear) {
  // The stretch axes are the eigenvectors of L L^T = SO^T diag(scale^2) SO.
  LcLMatrix3 square = linear * linear.Transposed();
  double(&a)[3][3] = square.m;
  double v[3][3];
  JacobiEigen(a, v);
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) scaleOrientation.m[r][c] = v[c][r];
  }

  // Row i of SO × L is scale i times row i of SO × R. Take the rows from the
  // longest down and build the shortest by the cross product, so that a lost
  // dimension still leaves a rotation.
  int order[3] = {0, 1, 2};
  for (int i = 0; i < 2; ++i) {
    for (int j = i + 1; j < 3; ++j) {
      if (a[order[j]][order[j]] > a[order[i]][order[i]]) {
        int t = order[i];
        order[i] = order[j];
        order[j] = t;
      }
    }
  }
  LcLVector3f rows[3];
  for (int i = 0; i < 3; ++i) {
    rows[i] = linear.Transform(LcLVector3f(v[0][i], v[1][i], v[2][i]));
  }
  LcLVector3f u[3];
  const int a0 = order[0];
  const int a1 = order[1];
  const int a2 = order[2];
  u[a0] = rows[a0];
  if (u[a0].Normalise() == 0.0) {
    // The zero map: no stretch axes worth the name and no turn.
    scale = LcLVector3f();
    return;
  }
  u[a1] = rows[a1] - u[a0] * rows[a1].Dot(u[a0]);
  if (!(u[a1].Length() > 1e-14 * rows[a0].Length())) {
    u[a1] = Across(u[a0]);
  } else {
    u[a1].Normalise();
  }
  // (a0, a1, a2) is an even permutation when a1 follows a0 cyclically.
  u[a2] = a1 == (a0 + 1) % 3 ? u[a0].Cross(u[a1]) : u[a1].Cross(u[a0]);
  for (int i = 0; i < 3; ++i) scale[i] = rows[i].Dot(u[i]);
  if (scale[a2] < 0.0) {
    // A mirror: a half turn about the last axis moves the sign onto all three.
    scale[a0] = -scale[a0];
    scale[a1] = -scale[a1];
    u[a0] = -u[a0];
    u[a1] = -u[a1];
  }
  LcLMatrix3 turned({{u[0].x, u[0].y, u[0].z}, {u[1].x, u[1].y, u[1].z}, {u[2].x, u[2].y, u[2].z}});
  rotation = scaleOrientation.Transposed() * turned;
}
