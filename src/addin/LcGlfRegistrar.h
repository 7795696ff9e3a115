#pragma once
#include "addin/LcGlfCom.h"
#include "addin/LcGlfRegistryScript.h"

// Applies the module's registry script to the classes root.
class LcGlfRegistrar {
public:
  // ForceRemove keys are deleted whole, then every key and value is written.
  static HRESULT Register(const LcGlfRegistryScript& script);
  // ForceRemove keys go whole; plain keys go when nothing else is left in
  // them; NoRemove keys stay.
  static HRESULT Unregister(const LcGlfRegistryScript& script);
};
