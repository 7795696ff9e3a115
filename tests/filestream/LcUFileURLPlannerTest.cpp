#include <gtest/gtest.h>

#include <vector>

#include "filestream/LcUFileURLPlanner.h"

TEST(FileURLPlanner, GrowsARunAroundTheHeadAndDropsLaterOrders) {
  struct Case {
    std::vector<uint32_t> order;
    bool combined;
    uint32_t first, last;
    int32_t taken;
  } cases[] = {
      {{5, 9, 6}, false, 0, 0, 0},  // 9 is the very next request and lies outside
      {{5, 6, 7, 8}, true, 5, 8, 4},
      {{5, 6, 9, 7}, true, 5, 6, 2},  // 9 and everything after it dropped
      {{3, 4, 10, 5}, true, 3, 4, 2},
      {{7, 6, 5}, true, 5, 7, 3},  // the run grows downwards too
      {{5, 6, 5, 7}, true, 5, 7, 4},
      {{5, 7}, false, 0, 0, 0},  // a run of one
      {{5, 5}, false, 0, 0, 0},  // one distinct block
      {{5}, false, 0, 0, 0},
  };
  for (const Case& c : cases) {
    LcUFileURLPlanner::Plan plan{};
    bool combined = LcUFileURLPlanner::Make(c.order.data(), int32_t(c.order.size()), plan);
    ASSERT_EQ(c.combined, combined) << c.order[0] << "," << c.order[1];
    if (!combined) continue;
    EXPECT_EQ(c.first, plan.first);
    EXPECT_EQ(c.last, plan.last);
    EXPECT_EQ(c.taken, plan.taken);
  }
}

TEST(FileURLPlanner, LooksAtSixteenRequestsAtMost) {
  std::vector<uint32_t> order;
  for (uint32_t i = 0; i < 20; ++i) order.push_back(100 + i);
  LcUFileURLPlanner::Plan plan{};
  ASSERT_TRUE(LcUFileURLPlanner::Make(order.data(), int32_t(order.size()), plan));
  EXPECT_EQ(100u, plan.first);
  EXPECT_EQ(115u, plan.last);
  EXPECT_EQ(16, plan.taken);
}
