#pragma once
#include "addin/ITWVeerbackGlfServer.h"

// The one coclass. Apartment-threaded: the reference count is not atomic.
// Aggregated, it delegates its IUnknown to the outer object.
class CTWVeerbackGlfServer final : public ITWVeerbackGlfServer {
public:
  static HRESULT Create(IUnknown* outer, REFIID riid, void** object);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argError) override;

  HRESULT STDMETHODCALLTYPE Activate(IDispatch* pDisp, VARIANT_BOOL FirstTime) override;
  HRESULT STDMETHODCALLTYPE Deactivate() override;

private:
  // The object's own identity, which an outer object holds when aggregating.
  struct Inner : IUnknown {
    CTWVeerbackGlfServer* self;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
  };

  explicit CTWVeerbackGlfServer(IUnknown* outer);
  ~CTWVeerbackGlfServer();
  HRESULT InvokeActivate(DISPPARAMS* params, UINT* argError);

  ULONG refs = 0;
  IDispatch* application = nullptr;
  IDispatch* site = nullptr;
  Inner inner;
  IUnknown* outer;
};
