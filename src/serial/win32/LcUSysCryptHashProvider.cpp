#include <windows.h>
#include <wincrypt.h>

#include "foundation/LcUError.h"
#include "serial/LcUSysCryptHash.h"

bool LcUSysCryptHash::AcquireProvider() {
  HCRYPTPROV context = 0;
  // The AES provider has SHA-256; a verify context needs no key container.
  if (!CryptAcquireContextW(&context, nullptr, nullptr, 24, 0xF0000000)) {
    LcUError::LogF("CryptAcquireContext failed: %d\n", int(GetLastError()));
    provider = 0;
    return false;
  }
  provider = uintptr_t(context);
  return true;
}

void LcUSysCryptHash::ReleaseProvider() {
  if (provider) CryptReleaseContext(HCRYPTPROV(provider), 0);
  provider = 0;
}
