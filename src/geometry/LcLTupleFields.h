#pragma once

// The named components of 2 and 3 component values, reachable by index too
// so that the arithmetic can be written once for both sizes.
template <int N>
struct LcLTupleFields;

template <>
struct LcLTupleFields<2> {
  constexpr LcLTupleFields(double x = 0.0, double y = 0.0) : x(x), y(y) {}
  double x, y;
  static constexpr double LcLTupleFields::*fields[2] = {&LcLTupleFields::x, &LcLTupleFields::y};
};

template <>
struct LcLTupleFields<3> {
  constexpr LcLTupleFields(double x = 0.0, double y = 0.0, double z = 0.0) : x(x), y(y), z(z) {}
  double x, y, z;
  static constexpr double LcLTupleFields::*fields[3] = {&LcLTupleFields::x, &LcLTupleFields::y,
                                                        &LcLTupleFields::z};
};
