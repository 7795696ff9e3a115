#include "SerialTesting.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "serial/LcUJsonNode.h"
#include "serial/LcUJsonStream.h"

namespace SerialTesting {
size_t HookCounter::allocations = 0;
size_t HookCounter::releases = 0;
size_t HookCounter::failFrom = 0;
size_t HookCounter::lastSize = 0;

void* HookCounter::Allocate(size_t size) {
  if (failFrom && allocations + 1 >= failFrom) return nullptr;
  ++allocations;
  lastSize = size;
  return std::malloc(size);
}

void HookCounter::Release(void* block) {
  ++releases;
  std::free(block);
}

void HookCounter::Install(size_t failAt) {
  allocations = releases = 0;
  failFrom = failAt;
  LcUJsonNode::SetHooks(Allocate, Release);
}

void HookCounter::Uninstall() {
  LcUJsonNode::SetHooks(nullptr, nullptr);
}

namespace {
// The stream component brings up errors and strings for every test.
class Environment : public ::testing::Environment {
public:
  void SetUp() override { LcUJsonStream::Initialize(); }
  void TearDown() override { LcUJsonStream::Terminate(); }
};
::testing::Environment* const environment = ::testing::AddGlobalTestEnvironment(new Environment);
}  // namespace
}  // namespace SerialTesting
