#include "serial/LcUSysCryptHashWinBase.h"

#include <openssl/evp.h>

#include "foundation/LcUError.h"

namespace {
EVP_MD_CTX* Context(uintptr_t handle) {
  return reinterpret_cast<EVP_MD_CTX*>(handle);
}
}  // namespace

bool LcUSysCryptHashWinBase::Create() {
  finished = false;
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  if (!context || !EVP_DigestInit_ex(context, algorithm == eSHA1 ? EVP_sha1() : EVP_sha256(), nullptr)) {
    EVP_MD_CTX_free(context);
    LcUError::LogF("CryptCreateHash failed: %d\n", -1);
    return false;
  }
  handle = reinterpret_cast<uintptr_t>(context);
  return true;
}

void LcUSysCryptHashWinBase::Destroy() {
  EVP_MD_CTX_free(Context(handle));
  handle = 0;
}

bool LcUSysCryptHashWinBase::Add(const void* data, uint32_t size) {
  if (!handle || finished) return false;
  return size == 0 || EVP_DigestUpdate(Context(handle), data, size) == 1;
}

bool LcUSysCryptHashWinBase::Finish(void* digest, uint32_t size) {
  if (!handle || finished || size < DigestSize()) return false;
  finished = true;
  unsigned int length = 0;
  return EVP_DigestFinal_ex(Context(handle), static_cast<unsigned char*>(digest), &length) == 1 &&
         length == DigestSize();
}
