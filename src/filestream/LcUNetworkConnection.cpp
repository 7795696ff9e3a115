#include "filestream/LcUNetworkConnection.h"

#include "environment/LcUTime.h"
#include "filestream/LcUSizedObject.h"
#include "filestream/LcUSysNetwork.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUNetworkConnection::component;

namespace {
LcUNetworkConnection* instance = nullptr;

uint64_t Milliseconds() {
  uint64_t tick = 0;
  LcUTime::Now(tick);
  return uint64_t(double(tick) * LcUTime::GetSecondsPerTick() * 1000);
}
}  // namespace

bool LcUNetworkConnection::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUNetworkConnection") != 1) return true;
  LcUMemory::Initialize();
  LcUTime::Initialize();
  LcUSysNetwork::Initialize();
  instance = LcUSizedObject::New<LcUNetworkConnection>(&LcUSysNetwork::IsNetworkUp);
  return instance != nullptr;
}

void LcUNetworkConnection::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUSizedObject::Delete(instance);
  LcUSysNetwork::Terminate();
  LcUTime::Terminate();
  LcUMemory::Terminate();
}

LcUNetworkConnection* LcUNetworkConnection::GetInstance() {
  return instance;
}

LcUNetworkConnection::LcUNetworkConnection(TestFunction test, Clock clock)
    : test(test), clock(clock ? clock : &Milliseconds) {}

bool LcUNetworkConnection::IsUp() {
  lock.Lock();
  if (!test) {
    state = eUNKNOWN;
  } else {
    uint64_t now = clock();
    if (!tested || now - lastTest > eRETEST_MILLISECONDS) {
      state = test() ? eUP : eDOWN;
      tested = true;
      lastTest = now;
    }
  }
  bool up = state == eUP;
  lock.Unlock();
  return up;
}

LcUNetworkConnection::State LcUNetworkConnection::GetState() {
  lock.Lock();
  State current = state;
  lock.Unlock();
  return current;
}

void LcUNetworkConnection::SetTestFunction(TestFunction function) {
  lock.Lock();
  test = function;
  tested = false;
  lock.Unlock();
}
