#include "serial/LcUSysCryptHash.h"

// libcrypto needs no context shared between digests.
bool LcUSysCryptHash::AcquireProvider() {
  return true;
}

void LcUSysCryptHash::ReleaseProvider() {}
