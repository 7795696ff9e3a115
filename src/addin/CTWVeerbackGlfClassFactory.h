#pragma once
#include "addin/LcGlfCom.h"

// Makes CTWVeerbackGlfServer objects, plain or aggregated. One static
// instance; its references lock the module.
class CTWVeerbackGlfClassFactory : public IClassFactory {
public:
  static CTWVeerbackGlfClassFactory& Get();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;
};
