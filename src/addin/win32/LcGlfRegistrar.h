#pragma once
#include <windows.h>

#include "addin/LcGlfRegistryScript.h"

// Applies the module's registry script to HKEY_CLASSES_ROOT.
class LcGlfRegistrar {
public:
  // The script resource of type "REGISTRY", with %MODULE% replaced.
  static HRESULT LoadScript(HMODULE module, int id, const char16_t* modulePath, LcGlfRegistryScript& script);
  // ForceRemove keys are deleted whole, then every key and value is written.
  static HRESULT Register(const LcGlfRegistryScript& script);
  // ForceRemove keys go whole; plain keys go when nothing else is left in
  // them; NoRemove keys stay.
  static HRESULT Unregister(const LcGlfRegistryScript& script);
};
