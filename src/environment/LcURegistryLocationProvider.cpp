#include "environment/LcURegistryLocationProvider.h"

#include "environment/LcUSysRegistry.h"

LcUBasicRegistryLocationProvider::LcUBasicRegistryLocationProvider(const char16_t* name) {
  LcUSysRegistry::JoinKey(u"Software", u"Hollimar", name, nullptr, location);
}

LcUBasicRegistryLocationProvider::LcUBasicRegistryLocationProvider(const char* name) {
  LcUString wide;
  LcUString::MultiByteToWide(name ? name : "", wide);
  LcUSysRegistry::JoinKey(u"Software", u"Hollimar", wide.Get() ? wide.Get() : u"", nullptr, location);
}
