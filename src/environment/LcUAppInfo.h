#pragma once
#include "environment/LcUAppInfoProvider.h"
#include "foundation/LcUComponent.h"

// The service through which the rest asks for the program's data folder.
class LcUAppInfo {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Not owned; answers the earlier one.
  static LcUAppInfoProvider* SetProvider(LcUAppInfoProvider* provider);
  // False, with out cleared, without a provider.
  static bool GetDirectory(int kind, LcUString& out);
};
