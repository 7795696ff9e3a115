#include "environment/LcUSessionRegistryLocationProvider.h"

#include "environment/LcUSessionInfo.h"
#include "environment/LcUSysRegistry.h"

LcUSessionRegistryLocationProvider::LcUSessionRegistryLocationProvider(const LcUSessionInfo& info,
                                                                       const LcUSessionRecord* record) {
  LcUString root;
  LcUSysRegistry::JoinKey(u"Software", info.company.Get(), info.product.Get(), info.version.Get(), root);
  locations.push_back(static_cast<LcUString&&>(root));
  if (!record) return;
  LcUString key;
  for (int index = eMAX_INHERIT_ROOT; index >= 0; --index) {
    key.Format(u"session.registry.inherit_root_%d", index);
    const char16_t* value = record->Find(key.Get());
    if (value && *value) locations.emplace_back(value);
  }
}
