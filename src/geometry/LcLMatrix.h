#pragma once
#include "foundation/LcUComponent.h"

// The component "LcLMatrix" of the linear algebra family. Its start brings up
// error reporting, where the family's warnings go.
class LcLMatrix {
public:
  static bool Initialize();
  static void Terminate();
  static LcUComponent component;
};
