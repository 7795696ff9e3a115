#include "environment/LcUResource.h"

#include "environment/LcUResourceTable.h"
#include "environment/LcUSession.h"
#include "environment/LcUSysFile.h"
#include "environment/LcUSysLocale.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUResource::component;

namespace {
LcUString searchDirs[LcUResource::eDIR_COUNT];
const LcUString emptyDir;
}  // namespace

bool LcUResource::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUResource") != 1) return true;
  LcUString::Initialize();
  LcUError::Initialize();
  LcUSession::Initialize();
  LcUSysLocale::Initialize();
  return true;
}

void LcUResource::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUResourceTable::Clear();
  for (LcUString& dir : searchDirs) dir.Free();
  LcUSysLocale::Terminate();
  LcUSession::Terminate();
  LcUError::Terminate();
  LcUString::Terminate();
}

int32_t LcUResource::IsInitialised() {
  return component.initCount;
}

const char* LcUResource::GetSearchDirName(int kind) {
  static const char* const kNames[eDIR_COUNT] = {
      "eDIR_USER", "eDIR_LOCAL",           "eDIR_PROJECT",      "eDIR_SITE",         "eDIR_APP",
      "eDIR_INSTALL", "eDIR_USER_APP_SHARED", "eDIR_USER_INHERIT", "eDIR_LOCAL_INHERIT"};
  return kind >= 0 && kind < eDIR_COUNT ? kNames[kind] : "";
}

void LcUResource::SetSearchDir(int kind, const char16_t* path) {
  if (kind < 0 || kind >= eDIR_COUNT) return;
  searchDirs[kind].Assign(path);
  LcUError::LogF("LcUResource: Search Dir %s = %ls\n", GetSearchDirName(kind), searchDirs[kind].Get());
}

void LcUResource::SetSearchDirFromFolder(int kind, int folder, const char16_t* relative) {
  LcUString path;
  if (!LcUSysFile::GetShellFolder(folder, path)) return;
  LcUSysFile::Join(path.Get(), relative, path);
  SetSearchDir(kind, path.Get());
}

const LcUString& LcUResource::GetSearchDir(int kind) {
  return kind >= 0 && kind < eDIR_COUNT ? searchDirs[kind] : emptyDir;
}
