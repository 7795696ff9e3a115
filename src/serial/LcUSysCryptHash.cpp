#include "serial/LcUSysCryptHash.h"

#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "serial/LcUSysCryptHashSHA1.h"
#include "serial/LcUSysCryptHashSHA256.h"

LcUComponent LcUSysCryptHash::component;
uintptr_t LcUSysCryptHash::provider = 0;

bool LcUSysCryptHash::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSysCryptHash") != 1) return true;
  LcUError::Initialize();
  return AcquireProvider();
}

void LcUSysCryptHash::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  ReleaseProvider();
  LcUError::Terminate();
}

namespace {
bool Digest(LcUSysCryptHashWinBase& hash, const void* data, uint32_t size, uint8_t* digest, uint32_t digestSize) {
  return hash.IsValid() && hash.Add(data, size) && hash.Finish(digest, digestSize);
}
}  // namespace

bool LcUSysCryptHash::SHA1(const void* data, uint32_t size, uint8_t (&digest)[eSHA1_SIZE]) {
  LcUSysCryptHashSHA1 hash;
  return Digest(hash, data, size, digest, eSHA1_SIZE);
}

bool LcUSysCryptHash::SHA256(const void* data, uint32_t size, uint8_t (&digest)[eSHA256_SIZE]) {
  LcUSysCryptHashSHA256 hash;
  return Digest(hash, data, size, digest, eSHA256_SIZE);
}
