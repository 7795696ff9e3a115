#include "geometry/LcLSquareMatrix.h"

#include "foundation/LcUString.h"
#include "geometry/LcLMatrix2.h"
#include "geometry/LcLMatrix3.h"
#include "geometry/LcLMatrix4.h"

template <typename Matrix, int N>
bool LcLSquareMatrix<Matrix, N>::GetText(LcUString& text) const {
  LcUString entry;
  bool ok = text.Format(u"");
  for (int r = 0; r < N; ++r) {
    for (int c = 0; c < N; ++c) {
      ok = entry.Format(c == 0 ? u"(%.4f" : u", %.4f", m[r][c]) && ok;
      text.Append(entry);
    }
    text.Append(u")\n");
  }
  return ok;
}

template bool LcLSquareMatrix<LcLMatrix2, 2>::GetText(LcUString&) const;
template bool LcLSquareMatrix<LcLMatrix3, 3>::GetText(LcUString&) const;
template bool LcLSquareMatrix<LcLMatrix4, 4>::GetText(LcUString&) const;
