#pragma once
#include <cstdint>

// Plans one combined download from the blocks at the head of the
// requests, in request order: the run of neighbouring block numbers around
// the head, and how many requests from the head it serves.
class LcUFileURLPlanner {
public:
  struct Plan {
    uint32_t first;
    uint32_t last;
    int32_t taken;
  };
  enum : int32_t { eMAX_RECORDS = 16 };

  // False when there is no combined download: fewer than two distinct
  // blocks, a run of one, or the very next request outside the run.
  static bool Make(const uint32_t* indexes, int32_t count, Plan& plan);
};
