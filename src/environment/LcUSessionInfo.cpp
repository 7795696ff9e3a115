#include "environment/LcUSessionInfo.h"

void LcUSessionInfo::Apply(const LcUSessionRecord& record) {
  const struct {
    const char16_t* key;
    LcUString LcUSessionInfo::*field;
  } kFields[] = {
      {u"session.registry.company", &LcUSessionInfo::company},
      {u"session.registry.product", &LcUSessionInfo::product},
      {u"session.registry.version", &LcUSessionInfo::version},
      {u"session.registry.options", &LcUSessionInfo::options},
      {u"session.registry.inherit_app_name", &LcUSessionInfo::inheritAppName},
      {u"session.release_name", &LcUSessionInfo::releaseName},
      {u"session.title", &LcUSessionInfo::title},
      {u"session.appdata", &LcUSessionInfo::appData},
      {u"session.productline", &LcUSessionInfo::productLine},
  };
  for (const auto& field : kFields)
    if (const char16_t* value = record.Find(field.key)) (this->*field.field).Assign(value);
  LcUString::WideToMultiByte(releaseName.Get(), releaseNameNarrow);
}
