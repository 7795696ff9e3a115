#include "filestream/LcUFileURLPlanner.h"

#include <algorithm>

bool LcUFileURLPlanner::Make(const uint32_t* indexes, int32_t count, Plan& plan) {
  count = std::min<int32_t>(count, eMAX_RECORDS);
  uint32_t sorted[eMAX_RECORDS];
  std::copy(indexes, indexes + count, sorted);
  std::sort(sorted, sorted + count);
  if (std::unique(sorted, sorted + count) - sorted < 2) return false;
  const uint32_t head = indexes[0];
  // Requests from the head on; the tail of later orders is dropped until
  // the run holds all that are left.
  for (int32_t limit = count;;) {
    std::copy(indexes, indexes + limit, sorted);
    std::sort(sorted, sorted + limit);
    int32_t at = int32_t(std::find(sorted, sorted + limit, head) - sorted);
    int32_t low = at, high = at;
    while (low > 0 && sorted[low] - sorted[low - 1] <= 1) --low;
    while (high + 1 < limit && sorted[high + 1] - sorted[high] <= 1) ++high;
    plan.first = sorted[low];
    plan.last = sorted[high];
    if (plan.first == plan.last) return false;
    int32_t outside = limit;
    for (int32_t order = 0; order < limit; ++order)
      if (indexes[order] < plan.first || indexes[order] > plan.last) {
        outside = order;
        break;
      }
    if (outside == limit) {
      plan.taken = limit;
      return true;
    }
    if (outside == 1) return false;
    limit = outside;
  }
}
