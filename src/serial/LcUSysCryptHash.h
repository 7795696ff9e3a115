#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// The hashing component: on Windows it holds the one provider context that
// every hash object of the process is created from.
class LcUSysCryptHash {
public:
  enum : uint32_t { eSHA1_SIZE = 20, eSHA256_SIZE = 32 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // One-shot digests; false when the platform refused.
  static bool SHA1(const void* data, uint32_t size, uint8_t (&digest)[eSHA1_SIZE]);
  static bool SHA256(const void* data, uint32_t size, uint8_t (&digest)[eSHA256_SIZE]);

private:
  friend class LcUSysCryptHashWinBase;
  // The platform's provider: acquired on the first start, released on the last stop.
  static bool AcquireProvider();
  static void ReleaseProvider();
  static uintptr_t provider;
};
