#pragma once
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"
#include "geometry/LcLMatrix.h"
#include "geometry/LcLMatrix3.h"
#include "geometry/LcLPoint.h"

constexpr double kPi = 3.141592653589793;

// Records every warning posted while it lives, whatever the component.
class LcLWarningLog {
public:
  struct Entry {
    LcUComponent* component;
    int32_t id;
    void* data;
    std::string message;
  };
  LcLWarningLog() {
    LcLMatrix::Initialize();
    current = this;
    LcUSysError::SetHandler(1, nullptr, -1, &Handle);
  }
  ~LcLWarningLog() {
    LcUSysError::RemoveHandler(1, nullptr, -1);
    current = nullptr;
    LcLMatrix::Terminate();
  }
  std::vector<Entry> entries;

private:
  static int Handle(int, LcUComponent* component, int32_t id, void* data, const char16_t* message) {
    std::string text(message, message + std::char_traits<char16_t>::length(message));
    current->entries.push_back({component, id, data, text});
    return 1;
  }
  static inline LcLWarningLog* current = nullptr;
};

// Same seed every run, so that a failure can be replayed.
class LcLRandom {
public:
  double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(engine); }
  LcLVector3f Vector(double range) { return LcLVector3f(Uniform(-range, range), Uniform(-range, range), Uniform(-range, range)); }
  LcLVector3f UnitVector() {
    LcLVector3f v;
    while (v.Length() < 0.1) v = Vector(1.0);
    return v.Normalised();
  }

private:
  std::mt19937_64 engine{20240611};
};

// Rodrigues' formula, as a row-vector matrix: a way to a rotation that owes
// nothing to quaternions.
inline LcLMatrix3 AxisAngleMatrix(const LcLVector3f& axis, double angle) {
  LcLVector3f k = axis.Normalised();
  double c = std::cos(angle), s = std::sin(angle), t = 1.0 - c;
  return LcLMatrix3({{t * k.x * k.x + c, t * k.x * k.y + s * k.z, t * k.x * k.z - s * k.y},
                     {t * k.x * k.y - s * k.z, t * k.y * k.y + c, t * k.y * k.z + s * k.x},
                     {t * k.x * k.z + s * k.y, t * k.y * k.z - s * k.x, t * k.z * k.z + c}});
}

#define EXPECT_VEC_NEAR(expected, actual, tolerance) \
  EXPECT_TRUE((expected).Equals((actual), (tolerance))) << (actual).x << ", " << (actual).y
