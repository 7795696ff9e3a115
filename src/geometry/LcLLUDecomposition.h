#pragma once
#include <cmath>

// LU decomposition with row scaling and partial pivoting: the 3 x 3 inverse
// when the determinant is lost in rounding, and the 4 x 4 inverse when the
// matrix isn't affine. The loops are unrolled, as at these sizes their
// bookkeeping would cost more than the arithmetic.
template <int N>
class LcLLUDecomposition {
public:
  // False for a row of zeros or a zero pivot.
  bool Decompose(const double (&a)[N][N]) {
    // Each row is weighed by its largest entry; the pivot is the candidate
    // largest against its row's, compared by cross-multiplying.
    double big[N];
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
      big[r] = 0.0;
#pragma GCC unroll 4
      for (int c = 0; c < N; ++c) {
        lu[r][c] = a[r][c];
        if (std::fabs(a[r][c]) > big[r]) big[r] = std::fabs(a[r][c]);
      }
      if (big[r] == 0.0) return false;
      order[r] = r;
    }
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) {
      int pivot = k;
#pragma GCC unroll 4
      for (int r = k + 1; r < N; ++r) {
        if (std::fabs(lu[r][k]) * big[pivot] > std::fabs(lu[pivot][k]) * big[r]) pivot = r;
      }
      if (pivot != k) {
#pragma GCC unroll 4
        for (int c = 0; c < N; ++c) Swap(lu[pivot][c], lu[k][c]);
        Swap(big[pivot], big[k]);
        int t = order[pivot];
        order[pivot] = order[k];
        order[k] = t;
      }
      if (lu[k][k] == 0.0) return false;
      double inverse = pivotInverse[k] = 1.0 / lu[k][k];
#pragma GCC unroll 4
      for (int r = k + 1; r < N; ++r) {
        double f = lu[r][k] *= inverse;
#pragma GCC unroll 4
        for (int c = k + 1; c < N; ++c) lu[r][c] -= f * lu[k][c];
      }
    }
    return true;
  }

  // The inverse, column by column: A x = e_j for each unit vector e_j.
  void Invert(double (&inverse)[N][N]) const {
#pragma GCC unroll 4
    for (int j = 0; j < N; ++j) {
      double x[N];
#pragma GCC unroll 4
      for (int r = 0; r < N; ++r) {
        double sum = order[r] == j ? 1.0 : 0.0;
#pragma GCC unroll 4
        for (int c = 0; c < r; ++c) sum -= lu[r][c] * x[c];
        x[r] = sum;
      }
#pragma GCC unroll 4
      for (int r = N - 1; r >= 0; --r) {
        double sum = x[r];
#pragma GCC unroll 4
        for (int c = r + 1; c < N; ++c) sum -= lu[r][c] * x[c];
        x[r] = sum * pivotInverse[r];
      }
#pragma GCC unroll 4
      for (int r = 0; r < N; ++r) inverse[r][j] = x[r];
    }
  }

private:
  static void Swap(double& a, double& b) {
    double t = a;
    a = b;
    b = t;
  }

  double lu[N][N];
  double pivotInverse[N];
  int order[N];
};
