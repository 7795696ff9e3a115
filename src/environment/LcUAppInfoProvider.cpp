#include "environment/LcUAppInfoProvider.h"

#include "environment/LcUSysFile.h"

bool LcUSessionAppInfoProvider::GetDirectory(int kind, LcUString& out) {
  out.Clear();
  if (kind != eDIR_APP_DATA || !LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_LOCAL_APPDATA, out)) return false;
  LcUSysFile::Join3(out.Get(), company.Get(), productLine.Get(), out);
  return true;
}

bool LcUFixedAppInfoProvider::GetDirectory(int kind, LcUString& out) {
  out.Clear();
  if (kind != eDIR_APP_DATA || folder.IsEmpty()) return false;
  out = folder;
  return true;
}

LcUHomeAppInfoProvider::LcUHomeAppInfoProvider(const char16_t* name) {
  if (LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_PROFILE, folder)) LcUSysFile::Join3(folder.Get(), u".hollimar", name, folder);
}

LcUTempAppInfoProvider::LcUTempAppInfoProvider() {
  LcUSysFile::MakeTempName(nullptr, u"appinfo", nullptr, folder);
}
