#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

// The base of hashing: data goes in piece by piece, the digest comes out once.
class LcUSysCryptHashHandle : public LcUDeletable {
public:
  ~LcUSysCryptHashHandle() override = default;
  virtual bool Add(const void* data, uint32_t size) = 0;
  // size must be at least DigestSize(); the hash is spent afterwards.
  virtual bool Finish(void* digest, uint32_t size) = 0;
  virtual uint32_t DigestSize() const = 0;
  // Starts a new digest on the same object.
  virtual bool Reset() = 0;
  // False when the platform could not create the hash.
  virtual bool IsValid() const = 0;
};
