#pragma once
#include <cstdint>

// What the observer is told on each status slot. A state is 0 with no
// open file that has a size, 1 idle, 2 not blocked and the next block has
// data, 3 busy.
struct LcUFileURLProgress {
  int32_t readState = 0;
  double readRatio = 0;
  int32_t downloadState = 0;
  double downloadRatio = 0;
};
