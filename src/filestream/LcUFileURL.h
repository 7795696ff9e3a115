#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

class LcUFileURLImpl;

// The component of streamed files: it starts what the engine stands on,
// then builds the process's one engine.
class LcUFileURL {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Null unless the component runs.
  static LcUFileURLImpl* GetInstance();
  // Taken by the engine at the next start: 1 own caching, 2 none, any
  // other decided by the address space.
  static void SetCacheMode(int32_t mode);
  static int32_t GetCacheMode();
};
