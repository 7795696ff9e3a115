#pragma once
#include <cstdint>
#include "foundation/LcUComponent.h"
#include "foundation/LcUCriticalSection.h"

// Whether the network is up, asked of a test function at most once every
// five seconds; between tests the last answer stands.
class LcUNetworkConnection {
public:
  enum State { eUP = 0, eDOWN = 1, eUNKNOWN = 2 };
  enum : uint64_t { eRETEST_MILLISECONDS = 5000 };
  typedef bool (*TestFunction)();
  // Milliseconds on a monotonic clock.
  typedef uint64_t (*Clock)();

  // Makes the process's connection, tested by the platform's answer.
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Null unless the component runs.
  static LcUNetworkConnection* GetInstance();

  explicit LcUNetworkConnection(TestFunction test, Clock clock = nullptr);
  LcUNetworkConnection(const LcUNetworkConnection&) = delete;
  LcUNetworkConnection& operator=(const LcUNetworkConnection&) = delete;

  // True only when the last test said up. Without a test function the
  // state becomes unknown.
  bool IsUp();
  State GetState();
  // A new function is asked at the next query, whatever the time.
  void SetTestFunction(TestFunction test);

private:
  LcUCriticalSection lock;
  State state = eUNKNOWN;
  bool tested = false;
  uint64_t lastTest = 0;
  TestFunction test;
  Clock clock;
};
