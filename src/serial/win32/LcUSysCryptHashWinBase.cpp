#include "serial/LcUSysCryptHashWinBase.h"

#include <windows.h>
#include <wincrypt.h>

#include "foundation/LcUError.h"
#include "serial/LcUSysCryptHash.h"

bool LcUSysCryptHashWinBase::Create() {
  finished = false;
  HCRYPTHASH hash = 0;
  if (!LcUSysCryptHash::provider ||
      !CryptCreateHash(HCRYPTPROV(LcUSysCryptHash::provider), algorithm == eSHA1 ? CALG_SHA1 : CALG_SHA_256, 0, 0,
                       &hash)) {
    LcUError::LogF("CryptCreateHash failed: %d\n", int(GetLastError()));
    return false;
  }
  handle = uintptr_t(hash);
  return true;
}

void LcUSysCryptHashWinBase::Destroy() {
  if (handle) CryptDestroyHash(HCRYPTHASH(handle));
  handle = 0;
}

bool LcUSysCryptHashWinBase::Add(const void* data, uint32_t size) {
  if (!handle || finished) return false;
  return size == 0 || CryptHashData(HCRYPTHASH(handle), static_cast<const BYTE*>(data), DWORD(size), 0);
}

bool LcUSysCryptHashWinBase::Finish(void* digest, uint32_t size) {
  if (!handle || finished || size < DigestSize()) return false;
  finished = true;
  DWORD length = DWORD(size);
  return CryptGetHashParam(HCRYPTHASH(handle), HP_HASHVAL, static_cast<BYTE*>(digest), &length, 0) &&
         length == DigestSize();
}
