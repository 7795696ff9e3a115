#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// The component of the synchronisation primitives, and their one way to
// report a failed construction or destruction: at level 0, then go on.
class LcULock {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  static void Report(int32_t code, void* data, const char16_t* message);
};
