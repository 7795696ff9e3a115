#pragma once
#include <cstdint>

#include "serial/LcUSysCryptHashHandle.h"

// The provider-backed middle class: CryptoAPI hash objects on Windows,
// libcrypto digest contexts on Linux.
class LcUSysCryptHashWinBase : public LcUSysCryptHashHandle {
public:
  enum Algorithm : int32_t { eSHA1 = 0, eSHA256 = 1 };

  ~LcUSysCryptHashWinBase() override;
  bool Add(const void* data, uint32_t size) override;
  bool Finish(void* digest, uint32_t size) override;
  uint32_t DigestSize() const override;
  bool Reset() override;
  bool IsValid() const override { return handle != 0; }

protected:
  explicit LcUSysCryptHashWinBase(Algorithm algorithm);

private:
  LcUSysCryptHashWinBase(const LcUSysCryptHashWinBase&) = delete;
  LcUSysCryptHashWinBase& operator=(const LcUSysCryptHashWinBase&) = delete;
  // Platform halves.
  bool Create();
  void Destroy();

  Algorithm algorithm;
  uintptr_t handle = 0;
  bool finished = false;
};
