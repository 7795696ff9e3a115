#pragma once
#include <cmath>
#include <utility>

#include "geometry/LcLPair.h"

// The inverse by LU decomposition with row scaling and partial pivoting: the
// 3 x 3 inverse when the determinant is lost in rounding, and the 4 x 4
// inverse when the affine shortcut doesn't apply. A row is held as two pairs,
// a 3 x 3 row padded with a zero, and the loops unroll, so that the whole
// decomposition can stay in registers: at these sizes the chain of pivot
// divisions sets the pace, and memory round trips would only lengthen it.
template <int N>
class LcLLUDecomposition {
public:
  // Solves A x = e_j for each unit vector e_j. False, leaving the output
  // alone, for a row of zeros or a zero pivot.
  static bool Invert(const double (&a)[N][N], double (&inverse)[N][N]) {
    Row lu[N];
    double big[N];
    int order[N];
    double pivotInverse[N];
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
      lu[r] = Row::Load(a[r]);
      // Its largest size; NaNs are passed over, so that a row of NaNs and
      // zeros counts as a row of zeros.
      LcLPair mostLo = LcLAbs(lu[r].lo) > 0.0 ? LcLAbs(lu[r].lo) : 0.0;
      LcLPair most = LcLAbs(lu[r].hi) > mostLo ? LcLAbs(lu[r].hi) : mostLo;
      big[r] = most[1] > most[0] ? most[1] : most[0];
      if (big[r] == 0.0) return false;
      order[r] = r;
    }
#pragma GCC unroll 4
    for (int k = 0; k < N; ++k) {
      // The pivot is the candidate largest against its row's largest entry,
      // compared by cross-multiplying; the first of equals wins.
      int pivot = k;
      double pivotSize = std::fabs(lu[k].Get(k));
      double pivotBig = big[k];
#pragma GCC unroll 4
      for (int r = k + 1; r < N; ++r) {
        double size = std::fabs(lu[r].Get(k));
        if (size * pivotBig > pivotSize * big[r]) {
          pivot = r;
          pivotSize = size;
          pivotBig = big[r];
        }
      }
      // Fixed row numbers in each test keep the rows in registers.
#pragma GCC unroll 4
      for (int r = k + 1; r < N; ++r) {
        if (r == pivot) {
          std::swap(lu[r], lu[k]);
          std::swap(big[r], big[k]);
          std::swap(order[r], order[k]);
        }
      }
      if (lu[k].Get(k) == 0.0) return false;
      pivotInverse[k] = 1.0 / lu[k].Get(k);
#pragma GCC unroll 4
      for (int r = k + 1; r < N; ++r) lu[r].Eliminate(k, lu[r].Get(k) * pivotInverse[k], lu[k]);
    }
    // The solves run side by side, a row of the inverse at a time; each entry
    // sees the arithmetic, in the order, of a solve column by column.
    static constexpr double kUnit[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    Row x[N];
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) {
      x[r] = {LcLLoadPair(kUnit[order[r]]), LcLLoadPair(kUnit[order[r]] + 2)};
#pragma GCC unroll 4
      for (int c = 0; c < r; ++c) x[r].Subtract(lu[r].Get(c), x[c]);
    }
#pragma GCC unroll 4
    for (int r = N - 1; r >= 0; --r) {
#pragma GCC unroll 4
      for (int c = r + 1; c < N; ++c) x[r].Subtract(lu[r].Get(c), x[c]);
      x[r].lo *= pivotInverse[r];
      x[r].hi *= pivotInverse[r];
    }
#pragma GCC unroll 4
    for (int r = 0; r < N; ++r) x[r].Store(inverse[r]);
    return true;
  }

private:
  // Columns 0 and 1, then 2 and 3.
  struct Row {
    static Row Load(const double (&row)[N]) {
      if constexpr (N == 4) {
        return {LcLLoadPair(row), LcLLoadPair(row + 2)};
      } else {
        return {LcLLoadPair(row), LcLPair{row[2], 0.0}};
      }
    }
    void Store(double (&row)[N]) const {
      LcLStorePair(row, lo);
      if constexpr (N == 4) {
        LcLStorePair(row + 2, hi);
      } else {
        row[2] = hi[0];
      }
    }
    double Get(int c) const { return c < 2 ? lo[c] : hi[c - 2]; }

    // This row -= f × that row.
    void Subtract(double f, const Row& that) {
      lo -= f * that.lo;
      hi -= f * that.hi;
    }
    // The same past column k, leaving the multiplier f in column k. Whole
    // pairs are worked and the columns up to k put back.
    void Eliminate(int k, double f, const Row& pivotRow) {
      LcLPair newLo = lo - f * pivotRow.lo;
      LcLPair newHi = hi - f * pivotRow.hi;
      if (k == 0) {
        lo = LcLPair{f, newLo[1]};
        hi = newHi;
      } else if (k == 1) {
        lo = LcLPair{lo[0], f};
        hi = newHi;
      } else {
        hi = LcLPair{f, newHi[1]};
      }
    }

    LcLPair lo, hi;
  };
};
