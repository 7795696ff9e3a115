#include <gtest/gtest.h>

#include "filestream/LcUNetworkConnection.h"

namespace {
uint64_t now = 0;
int calls = 0;
bool answer = true;

uint64_t FakeClock() {
  return now;
}
bool FakeTest() {
  ++calls;
  return answer;
}
}  // namespace

TEST(LcUNetworkConnectionTest, AnswerIsCachedForFiveSeconds) {
  now = 1000;
  calls = 0;
  answer = true;
  LcUNetworkConnection connection(&FakeTest, &FakeClock);
  EXPECT_EQ(LcUNetworkConnection::eUNKNOWN, connection.GetState());
  EXPECT_TRUE(connection.IsUp());
  EXPECT_EQ(1, calls);
  answer = false;
  now += 5000;
  EXPECT_TRUE(connection.IsUp());
  EXPECT_EQ(1, calls);
  now += 1;
  EXPECT_FALSE(connection.IsUp());
  EXPECT_EQ(2, calls);
  EXPECT_EQ(LcUNetworkConnection::eDOWN, connection.GetState());
  // A new test function is asked at once.
  answer = true;
  connection.SetTestFunction(&FakeTest);
  EXPECT_TRUE(connection.IsUp());
  EXPECT_EQ(3, calls);
  connection.SetTestFunction(nullptr);
  EXPECT_FALSE(connection.IsUp());
  EXPECT_EQ(LcUNetworkConnection::eUNKNOWN, connection.GetState());
}

TEST(LcUNetworkConnectionTest, ComponentAnswersUpOnThePlatformClock) {
  EXPECT_EQ(nullptr, LcUNetworkConnection::GetInstance());
  ASSERT_TRUE(LcUNetworkConnection::Initialize());
  ASSERT_NE(nullptr, LcUNetworkConnection::GetInstance());
  EXPECT_TRUE(LcUNetworkConnection::GetInstance()->IsUp());
  EXPECT_EQ(LcUNetworkConnection::eUP, LcUNetworkConnection::GetInstance()->GetState());
  LcUNetworkConnection::Terminate();
  EXPECT_EQ(nullptr, LcUNetworkConnection::GetInstance());
}
