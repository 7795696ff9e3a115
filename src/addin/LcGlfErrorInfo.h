#pragma once
#include "addin/LcGlfCom.h"
#include "foundation/LcUString.h"

// The error information of the last failed host call, kept on the calling
// thread as SetErrorInfo keeps it.
class LcGlfErrorInfo {
public:
  static void Store(const EXCEPINFO& exception);
  // The description stored last on this thread; empty when there is none.
  static void GetDescription(LcUString& description);
};
