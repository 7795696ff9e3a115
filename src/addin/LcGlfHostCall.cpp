#include "addin/LcGlfHostCall.h"

#include "addin/LcGlfErrorInfo.h"
#include "addin/LcGlfVariant.h"

HRESULT LcGlfHostCall::Invoke(IDispatch* object, DISPID id, WORD kind, VARTYPE resultType, VARIANT* result,
                              const VARIANT* args, UINT argCount) {
  if (result) VariantInit(result);
  if (!object) return E_POINTER;
  if (kind == DISPATCH_PROPERTYPUT && argCount == 0) return E_INVALIDARG;
  enum { kMaxArgs = 4 };
  if (argCount > kMaxArgs) return E_INVALIDARG;
  VARIANT packed[kMaxArgs];
  for (UINT i = 0; i < argCount; ++i) packed[i] = args[argCount - 1 - i];
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params = {packed, nullptr, argCount, 0};
  if (kind == DISPATCH_PROPERTYPUT) {
    params.rgdispidNamedArgs = &named;
    params.cNamedArgs = 1;
  }
  VARIANT answer;
  VariantInit(&answer);
  EXCEPINFO exception = {};
  UINT argError = 0;
  HRESULT hr = object->Invoke(id, IID_NULL, 0, kind, &params, result ? &answer : nullptr, &exception, &argError);
  if (hr == DISP_E_EXCEPTION) {
    // A host may leave the details to be filled in on demand.
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    LcGlfErrorInfo::Store(exception);
    // The host's own code rather than the wrapper's; an exception told by wCode alone has none.
    if (FAILED(exception.scode)) hr = exception.scode;
  }
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (FAILED(hr) || !result) {
    VariantClear(&answer);
    return hr;
  }
  hr = LcGlfVariant::ChangeType(answer, resultType);
  if (SUCCEEDED(hr)) *result = answer;
  return hr;
}

HRESULT LcGlfHostCall::GetObject(IDispatch* object, DISPID id, IDispatch** value) {
  *value = nullptr;
  VARIANT result;
  HRESULT hr = Invoke(object, id, DISPATCH_PROPERTYGET, VT_DISPATCH, &result);
  if (SUCCEEDED(hr)) *value = result.pdispVal;
  return hr;
}
