// The module's exported server functions.
#include "addin/CTWVeerbackGlfClassFactory.h"
#include "addin/CTWVeerbackGlfModule.h"
#include "addin/LcGlfGuids.h"
#include "addin/dll/TWVeerbackGlfExports.h"

namespace {
int purifyCalls = 0;
}

TW_EXPORT HRESULT DllCanUnloadNow() {
  return CTWVeerbackGlfModule::Get().GetLockCount() == 0 ? S_OK : S_FALSE;
}

TW_EXPORT HRESULT DllGetClassObject(REFCLSID clsid, REFIID riid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (clsid != CLSID_TWVeerbackGlfServer) return CLASS_E_CLASSNOTAVAILABLE;
  return CTWVeerbackGlfClassFactory::Get().QueryInterface(riid, object);
}

TW_EXPORT HRESULT DllRegisterServer() {
  return CTWVeerbackGlfModule::Get().RegisterServer();
}

TW_EXPORT HRESULT DllUnregisterServer() {
  return CTWVeerbackGlfModule::Get().UnregisterServer();
}

// Nothing calls it; it answers 0 and counts its calls.
TW_EXPORT int PurifyIsRunning() {
  ++purifyCalls;
  return 0;
}
