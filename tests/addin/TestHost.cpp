#include "TestHost.h"

#include "addin/LcGlfGuids.h"

HRESULT TestDispatch::QueryInterface(REFIID riid, void** object) {
  if (riid == IID_IUnknown || riid == IID_IDispatch || (offersSite && riid == IID_GlfAddInSite)) {
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

HRESULT TestDispatch::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT TestDispatch::GetTypeInfo(UINT, LCID, ITypeInfo**) {
  return E_NOTIMPL;
}

HRESULT TestDispatch::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
  return E_NOTIMPL;
}

void TestDispatch::SetProperty(DISPID id, const VARIANT& value) {
  properties.push_back({id, value});
}

void TestDispatch::SetException(DISPID id, SCODE scode, bool deferred) {
  exceptions.push_back({id, scode, deferred});
}

namespace {
SCODE deferredScode = 0;

HRESULT STDMETHODCALLTYPE FillIn(EXCEPINFO* exception) {
  exception->scode = deferredScode;
  return S_OK;
}
}  // namespace

HRESULT TestDispatch::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO* exception,
                             UINT*) {
  calls.push_back({id, flags});
  for (const Exception& e : exceptions) {
    if (e.id != id) continue;
    if (!exception) return DISP_E_EXCEPTION;
    *exception = EXCEPINFO();
    exception->bstrDescription = SysAllocString(reinterpret_cast<const OLECHAR*>(u"host refused"));
    if (e.deferred) {
      deferredScode = e.scode;
      exception->pfnDeferredFillIn = &FillIn;
    } else {
      exception->scode = e.scode;
    }
    return DISP_E_EXCEPTION;
  }
  for (const Property& p : properties) {
    if (p.id != id || !(flags & DISPATCH_PROPERTYGET)) continue;
    if (!result) return E_INVALIDARG;
    *result = p.value;
    if ((result->vt == VT_DISPATCH || result->vt == VT_UNKNOWN) && result->punkVal) result->punkVal->AddRef();
    return S_OK;
  }
  return DISP_E_MEMBERNOTFOUND;
}

TestHost::TestHost() {
  site.OfferSite(true);
  VARIANT app;
  VariantInit(&app);
  app.vt = VT_DISPATCH;
  app.pdispVal = &application;
  site.SetProperty(0x3001401, app);
  VARIANT window;
  VariantInit(&window);
  window.vt = VT_I4;
  window.lVal = 0;
  application.SetProperty(0x300012A, window);
}

int TestHost::CountCalls(DISPID id) const {
  int n = 0;
  for (const TestDispatch::Call& call : application.GetCalls())
    if (call.id == id) ++n;
  return n;
}
