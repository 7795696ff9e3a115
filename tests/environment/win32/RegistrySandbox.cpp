#include "RegistrySandbox.h"

#include <windows.h>

#include "EnvironmentTesting.h"
#include "environment/LcUSysRegistry.h"

namespace EnvironmentTesting {
namespace {
int counter = 0;
}

RegistrySandbox::RegistrySandbox(const LcUString&) {
  base = Wide("Software\\TwRegistryTest\\" + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++counter));
}

RegistrySandbox::~RegistrySandbox() {
  for (int hive : {int(LcUSysRegistry::eHIVE_CURRENT_USER), int(LcUSysRegistry::eHIVE_LOCAL_MACHINE)}) {
    LcUSysRegistry::DeleteKey(hive, base.Get(), true);
    // The shared parent goes only once no other test is using it.
    LcUSysRegistry::DeleteKey(hive, u"Software\\TwRegistryTest", false);
  }
}
}  // namespace EnvironmentTesting
