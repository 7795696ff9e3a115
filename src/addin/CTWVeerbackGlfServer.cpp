#include "addin/CTWVeerbackGlfServer.h"

#include <new>

#include "addin/CTWVeerbackGlfModule.h"
#include "addin/LcGlfGuids.h"
#include "addin/LcGlfHostCall.h"
#include "addin/LcGlfTrackBackReceiver.h"
#include "addin/LcGlfVariant.h"
#include "environment/LcUResource.h"
#include "environment/LcUSession.h"
#include "environment/LcUSysFile.h"
#include "foundation/LcUError.h"
#include "foundation/LcUString.h"

namespace {
constexpr DISPID kSiteApplication = 0x3001401;
constexpr uint32_t kModulePathUnits = 512;

// Owned by the server's activation: made by Activate, deleted by Deactivate.
LcGlfTrackBackReceiver* receiver = nullptr;
}  // namespace

CTWVeerbackGlfServer::CTWVeerbackGlfServer(IUnknown* outerUnknown) {
  inner.self = this;
  outer = outerUnknown ? outerUnknown : &inner;
  CTWVeerbackGlfModule::Get().Lock();
}

CTWVeerbackGlfServer::~CTWVeerbackGlfServer() {
  CTWVeerbackGlfModule::Get().Unlock();
}

HRESULT CTWVeerbackGlfServer::Create(IUnknown* outerUnknown, REFIID riid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  // An aggregated object hands its own identity to the outer one first.
  if (outerUnknown && riid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
  auto* server = new (std::nothrow) CTWVeerbackGlfServer(outerUnknown);
  if (!server) return E_OUTOFMEMORY;
  server->inner.AddRef();
  HRESULT hr = server->inner.QueryInterface(riid, object);
  server->inner.Release();
  return hr;
}

HRESULT CTWVeerbackGlfServer::Inner::QueryInterface(REFIID riid, void** object) {
  if (!object) return E_POINTER;
  if (riid == IID_IUnknown) {
    *object = static_cast<IUnknown*>(this);
  } else if (riid == IID_IDispatch || riid == IID_ITWVeerbackGlfServer) {
    *object = static_cast<ITWVeerbackGlfServer*>(self);
  } else {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  static_cast<IUnknown*>(*object)->AddRef();
  return S_OK;
}

ULONG CTWVeerbackGlfServer::Inner::AddRef() {
  return ++self->refs;
}

ULONG CTWVeerbackGlfServer::Inner::Release() {
  ULONG left = --self->refs;
  if (left == 0) delete self;
  return left;
}

HRESULT CTWVeerbackGlfServer::QueryInterface(REFIID riid, void** object) {
  return outer->QueryInterface(riid, object);
}

ULONG CTWVeerbackGlfServer::AddRef() {
  return outer->AddRef();
}

ULONG CTWVeerbackGlfServer::Release() {
  return outer->Release();
}

HRESULT CTWVeerbackGlfServer::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = CTWVeerbackGlfModule::Get().HasTypeInfo() ? 1 : 0;
  return S_OK;
}

HRESULT CTWVeerbackGlfServer::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADVARTYPE;
  return CTWVeerbackGlfModule::Get().GetTypeInfo(info);
}

HRESULT CTWVeerbackGlfServer::GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids || count == 0) return E_INVALIDARG;
  HRESULT hr = S_OK;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  const char16_t* name = reinterpret_cast<const char16_t*>(names[0]);
  if (LcUString::CompareNoCase(name, u"Activate") == 0) {
    ids[0] = eDISPID_ACTIVATE;
    static const char16_t* const kParameters[] = {u"pDisp", u"FirstTime"};
    for (UINT i = 1; i < count; ++i) {
      for (DISPID p = 0; p < 2; ++p)
        if (LcUString::CompareNoCase(reinterpret_cast<const char16_t*>(names[i]), kParameters[p]) == 0) ids[i] = p;
      if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
  }
  if (LcUString::CompareNoCase(name, u"Deactivate") == 0 && count == 1) {
    ids[0] = eDISPID_DEACTIVATE;
    return S_OK;
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT CTWVeerbackGlfServer::Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argError) {
  if (riid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!params) return E_INVALIDARG;
  if (id != eDISPID_ACTIVATE && id != eDISPID_DEACTIVATE) return DISP_E_MEMBERNOTFOUND;
  if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
  if (params->cNamedArgs) return DISP_E_NONAMEDARGS;
  if (result) VariantInit(result);
  HRESULT hr;
  if (id == eDISPID_ACTIVATE) {
    hr = InvokeActivate(params, argError);
    if (hr == DISP_E_BADPARAMCOUNT || hr == DISP_E_TYPEMISMATCH) return hr;
  } else {
    if (params->cArgs != 0) return DISP_E_BADPARAMCOUNT;
    hr = Deactivate();
  }
  // A failing method comes back as an exception carrying its result.
  if (FAILED(hr) && exception) {
    *exception = EXCEPINFO();
    exception->scode = hr;
    return DISP_E_EXCEPTION;
  }
  return hr;
}

HRESULT CTWVeerbackGlfServer::InvokeActivate(DISPPARAMS* params, UINT* argError) {
  if (params->cArgs != 2) return DISP_E_BADPARAMCOUNT;
  // Arguments come last first: rgvarg[1] is pDisp.
  VARIANT disp, firstTime;
  LcGlfVariant::Copy(params->rgvarg[1], disp);
  LcGlfVariant::Copy(params->rgvarg[0], firstTime);
  if (FAILED(LcGlfVariant::ChangeType(disp, VT_DISPATCH))) {
    VariantClear(&firstTime);
    if (argError) *argError = 1;
    return DISP_E_TYPEMISMATCH;
  }
  if (FAILED(LcGlfVariant::ChangeType(firstTime, VT_BOOL))) {
    VariantClear(&disp);
    if (argError) *argError = 0;
    return DISP_E_TYPEMISMATCH;
  }
  HRESULT hr = Activate(disp.pdispVal, firstTime.boolVal);
  VariantClear(&disp);
  return hr;
}

HRESULT CTWVeerbackGlfServer::Activate(IDispatch* pDisp, VARIANT_BOOL /*FirstTime: never read*/) {
  if (!pDisp) return E_INVALIDARG;
  HRESULT hr = pDisp->QueryInterface(IID_GlfAddInSite, reinterpret_cast<void**>(&site));
  if (FAILED(hr)) {
    site = nullptr;
    return hr;
  }
  hr = LcGlfHostCall::GetObject(site, kSiteApplication, &application);
  if (FAILED(hr)) return hr;

  LcUString::Initialize();
  char16_t modulePath[kModulePathUnits];
  uint32_t length = CTWVeerbackGlfModule::Get().GetModuleFileName(modulePath, kModulePathUnits);
  // No truncated path is trusted: a path that fills the buffer counts as none,
  // and the add-in stays loaded with no receiver.
  if ((length & ~kModulePathUnits) != 0) {
    // The session file sits beside the module, not the host's program.
    LcUString folder;
    LcUSysFile::GetDirectory(modulePath, &folder, nullptr);
    LcUSession::SetSessionFolder(folder.Get());
    LcUSession::Initialize();
    LcUError::Initialize();
    LcUResource::Initialize();
    LcUResource::SetSearchDirFromFolder(LcUResource::eDIR_USER_APP_SHARED, LcUSysFile::eFOLDER_APPDATA,
                                        LcUSession::GetProductLine());
    receiver = new (std::nothrow) LcGlfTrackBackReceiver();
    if (receiver && application) receiver->SetApplication(application);
  }
  return S_OK;
}

HRESULT CTWVeerbackGlfServer::Deactivate() {
  delete receiver;
  receiver = nullptr;
  LcUResource::Terminate();
  LcUError::Terminate();
  LcUSession::Terminate();
  LcUString::Terminate();
  if (site) {
    site->Release();
    site = nullptr;
  }
  if (application) {
    application->Release();
    application = nullptr;
  }
  return S_OK;
}
