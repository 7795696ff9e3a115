#include "HostSimRegistration.h"

#include "HostSimText.h"
#include "addin/LcGlfGuids.h"
#include "environment/LcUSysRegistry.h"

namespace {
constexpr int kClasses = LcUSysRegistry::eHIVE_CLASSES_ROOT;

LcUString ClassKey(REFGUID clsid) {
  char16_t text[40];
  LcGlfGuidToText(clsid, text);
  LcUString key;
  LcUSysRegistry::JoinKey(u"CLSID", text, nullptr, nullptr, key);
  return key;
}

bool LoadsOnStartUp(const LcUString& classKey) {
  char16_t category[40];
  LcGlfGuidToText(CATID_GlfAddIns, category);
  LcUString categoryKey, settings, value;
  LcUSysRegistry::JoinKey(classKey.Get(), u"Implemented Categories", category, nullptr, categoryKey);
  LcUSysRegistry::JoinKey(classKey.Get(), u"Settings", nullptr, nullptr, settings);
  return LcUSysRegistry::KeyExists(kClasses, categoryKey.Get()) &&
         LcUSysRegistry::GetTextValue(kClasses, settings.Get(), u"LoadOnStartUp", value) &&
         LcUString::Equal(value.Get(), u"1");
}
}  // namespace

bool HostSimRegistration::FindStartUpAddIn(GUID& clsid) {
  LcUString name;
  for (uint32_t i = 0; LcUSysRegistry::GetSubKey(kClasses, u"CLSID", i, &name, nullptr, nullptr); ++i) {
    GUID candidate;
    if (HostSimText::ReadGuid(HostSimText::ToUtf8(std::u16string(name.Get(), size_t(name.Length()))), candidate) &&
        LoadsOnStartUp(ClassKey(candidate))) {
      clsid = candidate;
      return true;
    }
  }
  return false;
}

bool HostSimRegistration::GetModule(REFGUID clsid, std::string& path) {
  LcUString key, module;
  LcUSysRegistry::JoinKey(ClassKey(clsid).Get(), u"InprocServer32", nullptr, nullptr, key);
  if (!LcUSysRegistry::GetTextValue(kClasses, key.Get(), nullptr, module) || module.IsEmpty()) return false;
  path = HostSimText::ToUtf8(std::u16string(module.Get(), size_t(module.Length())));
  return true;
}
