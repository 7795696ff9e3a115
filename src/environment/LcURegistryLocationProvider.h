#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

// The key roots that registry reads and writes resolve short keys
// against: location 0 is the application's own, later ones are roots of
// earlier versions to inherit from. Paths below the hive, no leading
// backslash.
class LcURegistryLocationProvider : public LcUDeletable {
public:
  virtual ~LcURegistryLocationProvider() = default;
  virtual int32_t GetLocationCount() const = 0;
  virtual const char16_t* GetLocation(int32_t index) const = 0;
};

// One location: "Software\Hollimar\<name>".
class LcUBasicRegistryLocationProvider : public LcURegistryLocationProvider {
public:
  explicit LcUBasicRegistryLocationProvider(const char16_t* name);
  explicit LcUBasicRegistryLocationProvider(const char* name);
  int32_t GetLocationCount() const override { return 1; }
  const char16_t* GetLocation(int32_t) const override { return location.Get(); }

private:
  LcUString location;
};
