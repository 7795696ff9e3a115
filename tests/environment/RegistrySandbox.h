#pragma once
#include <string>

#include "foundation/LcUString.h"

namespace EnvironmentTesting {
// A registry of the test's own. On Linux the store moves into `folder`, so
// nothing outlives the test's folder; on Windows the real registry is used
// and the test's keys leave both the user and the machine hive with it.
class RegistrySandbox {
public:
  explicit RegistrySandbox(const LcUString& folder);
  ~RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;

  // "Software\TwRegistryTest\<process>-<n>": unique to this sandbox, so
  // tests running side by side under one Wine prefix never meet.
  const LcUString& Base() const { return base; }
  // Base, a backslash and leaf.
  LcUString Key(const char16_t* leaf) const {
    LcUString key(base);
    key.Append(u'\\');
    key.Append(leaf);
    return key;
  }

private:
  LcUString base;
  // The variable as it was before, restored afterwards (Linux).
  std::string previous;
  bool hadPrevious = false;
};
}  // namespace EnvironmentTesting
