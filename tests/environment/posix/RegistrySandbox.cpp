#include "RegistrySandbox.h"

#include <unistd.h>

#include <cstdlib>

#include "EnvironmentTesting.h"

namespace EnvironmentTesting {
namespace {
int counter = 0;
}

RegistrySandbox::RegistrySandbox(const LcUString& folder) {
  base = Wide("Software\\TwRegistryTest\\" + std::to_string(getpid()) + "-" + std::to_string(++counter));
  if (const char* held = std::getenv("TW_REGISTRY_DIR")) {
    previous = held;
    hadPrevious = true;
  }
  std::string native = Narrow(folder);
  for (char& c : native)
    if (c == '\\') c = '/';
  setenv("TW_REGISTRY_DIR", native.c_str(), 1);
}

RegistrySandbox::~RegistrySandbox() {
  // The store files go with the test's folder.
  if (hadPrevious)
    setenv("TW_REGISTRY_DIR", previous.c_str(), 1);
  else
    unsetenv("TW_REGISTRY_DIR");
}
}  // namespace EnvironmentTesting
