#include "addin/CTWVeerbackGlfClassFactory.h"

#include "addin/CTWVeerbackGlfModule.h"
#include "addin/CTWVeerbackGlfServer.h"

CTWVeerbackGlfClassFactory& CTWVeerbackGlfClassFactory::Get() {
  static CTWVeerbackGlfClassFactory factory;
  return factory;
}

HRESULT CTWVeerbackGlfClassFactory::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (riid != IID_IUnknown && riid != IID_IClassFactory) {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

ULONG CTWVeerbackGlfClassFactory::AddRef() {
  CTWVeerbackGlfModule::Get().Lock();
  return 2;
}

ULONG CTWVeerbackGlfClassFactory::Release() {
  CTWVeerbackGlfModule::Get().Unlock();
  return 1;
}

HRESULT CTWVeerbackGlfClassFactory::CreateInstance(IUnknown* outer, REFIID riid, void** object) {
  return CTWVeerbackGlfServer::Create(outer, riid, object);
}

HRESULT CTWVeerbackGlfClassFactory::LockServer(BOOL lock) {
  if (lock)
    CTWVeerbackGlfModule::Get().Lock();
  else
    CTWVeerbackGlfModule::Get().Unlock();
  return S_OK;
}
