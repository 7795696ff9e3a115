#include "geometry/LcLTuple.h"

#include "foundation/LcUString.h"

template <int N>
bool LcLTuple<N>::GetText(LcUString& text) const {
  if constexpr (N == 2) {
    return text.Format(u"(%.16f, %.16f)", this->x, this->y);
  } else {
    return text.Format(u"(%.16f, %.16f, %.16f)", this->x, this->y, this->z);
  }
}

template bool LcLTuple<2>::GetText(LcUString&) const;
template bool LcLTuple<3>::GetText(LcUString&) const;
