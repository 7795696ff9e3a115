#include "addin/CTWVeerbackGlfModule.h"

CTWVeerbackGlfModule& CTWVeerbackGlfModule::Get() {
  static CTWVeerbackGlfModule module;
  return module;
}
