#pragma once
#include <cmath>

class LcUString;

// What the 2 x 2, 3 x 3 and 4 x 4 matrices share. Geometry is by row vectors,
// v' = v × M, so a × b applies a first. A new matrix is the identity.
template <typename Matrix, int N>
class LcLSquareMatrix {
public:
  // The small fixed loops here are unrolled so that a matrix in flight can
  // live in registers.
  LcLSquareMatrix() {
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
#pragma GCC unroll 4
      for (int c = 0; c < N; ++c) m[r][c] = r == c ? 1.0 : 0.0;
    }
  }
  explicit LcLSquareMatrix(const double (&rows)[N][N]) {
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
#pragma GCC unroll 4
      for (int c = 0; c < N; ++c) m[r][c] = rows[r][c];
    }
  }

  Matrix operator*(const Matrix& b) const {
    // Row r of the product combines the rows of b, so the inner loop runs
    // over contiguous entries.
    double p[N][N];
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
#pragma GCC unroll 4
      for (int c = 0; c < N; ++c) p[r][c] = m[r][0] * b.m[0][c];
#pragma GCC unroll 4
      for (int k = 1; k < N; ++k) {
#pragma GCC unroll 4
        for (int c = 0; c < N; ++c) p[r][c] += m[r][k] * b.m[k][c];
      }
    }
    return Matrix(p);
  }
  Matrix operator*(double s) const {
    Matrix p;
    for (int r = 0; r < N; ++r) {
      for (int c = 0; c < N; ++c) p.m[r][c] = m[r][c] * s;
    }
    return p;
  }

  Matrix Transposed() const {
    Matrix t;
    for (int r = 0; r < N; ++r) {
      for (int c = 0; c < N; ++c) t.m[r][c] = m[c][r];
    }
    return t;
  }

  bool IsIdentity() const {
    for (int r = 0; r < N; ++r) {
      for (int c = 0; c < N; ++c) {
        if (m[r][c] != (r == c ? 1.0 : 0.0)) return false;
      }
    }
    return true;
  }

  // Each entry differs by at most the tolerance.
  bool Equals(const LcLSquareMatrix& o, double tolerance) const {
    for (int r = 0; r < N; ++r) {
      for (int c = 0; c < N; ++c) {
        if (!(std::fabs(m[r][c] - o.m[r][c]) <= tolerance)) return false;
      }
    }
    return true;
  }
  bool operator==(const LcLSquareMatrix& o) const {
    for (int r = 0; r < N; ++r) {
      for (int c = 0; c < N; ++c) {
        if (m[r][c] != o.m[r][c]) return false;
      }
    }
    return true;
  }
  bool operator!=(const LcLSquareMatrix& o) const { return !(*this == o); }

  // One line "(%.4f, ...)\n" per row; false when the text could not be stored.
  bool GetText(LcUString& text) const;

  double m[N][N];
};
