#include "environment/LcUAppInfo.h"

#include "foundation/LcUSysError.h"

LcUComponent LcUAppInfo::component;

namespace {
LcUAppInfoProvider* provider = nullptr;
}

bool LcUAppInfo::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUAppInfo") != 1) return true;
  LcUString::Initialize();
  return true;
}

void LcUAppInfo::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUString::Terminate();
}

LcUAppInfoProvider* LcUAppInfo::SetProvider(LcUAppInfoProvider* next) {
  LcUAppInfoProvider* previous = provider;
  provider = next;
  return previous;
}

bool LcUAppInfo::GetDirectory(int kind, LcUString& out) {
  if (provider) return provider->GetDirectory(kind, out);
  out.Clear();
  return false;
}
