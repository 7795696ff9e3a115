#pragma once
#include "foundation/LcUComponent.h"

class LcUFileURLImpl;

// The component of streamed files: it starts what the engine stands on,
// then builds the process's one engine and defines its cache mode option.
class LcUFileURL {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Null unless the component runs.
  static LcUFileURLImpl* GetInstance();
};
