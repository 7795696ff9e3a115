#pragma once
#include <cmath>

// A colour as red, green and blue intensities.
class LcLColor3f {
public:
  constexpr LcLColor3f(double red = 0.0, double green = 0.0, double blue = 0.0)
      : red(red), green(green), blue(blue) {}

  bool Equals(const LcLColor3f& o, double tolerance) const {
    return std::fabs(red - o.red) <= tolerance && std::fabs(green - o.green) <= tolerance &&
           std::fabs(blue - o.blue) <= tolerance;
  }
  bool operator==(const LcLColor3f& o) const { return red == o.red && green == o.green && blue == o.blue; }
  bool operator!=(const LcLColor3f& o) const { return !(*this == o); }

  double red, green, blue;
};
