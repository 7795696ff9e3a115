#pragma once

// Tolerance for directions and lengths.
constexpr double LcLEpsilon = 1e-10;
// How close to a pole the Euler angles give up the first angle.
constexpr double LcLPoleEpsilon = 1e-06;
