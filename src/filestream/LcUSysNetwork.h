#pragma once
#include "foundation/LcUComponent.h"

// The platform's answer to whether the network is up. No platform offers
// a question worth trusting, so the answer is yes on both, and a failed
// download tells the truth instead.
class LcUSysNetwork {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  static bool IsNetworkUp();
};
