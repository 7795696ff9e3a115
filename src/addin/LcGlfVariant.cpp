#include "addin/LcGlfVariant.h"

namespace {
// Reads a by-reference value into a plain one, taking its own references.
HRESULT Dereference(VARIANT& value) {
  if (!(value.vt & VT_BYREF)) return S_OK;
  VARIANT plain;
  VariantInit(&plain);
  switch (value.vt & ~VT_BYREF) {
    case VT_I4: plain.vt = VT_I4; plain.lVal = *value.plVal; break;
    case VT_R8: plain.vt = VT_R8; plain.dblVal = *value.pdblVal; break;
    case VT_BOOL: plain.vt = VT_BOOL; plain.boolVal = *value.pboolVal; break;
    case VT_BSTR:
      plain.vt = VT_BSTR;
      plain.bstrVal = *value.pbstrVal ? SysAllocStringLen(*value.pbstrVal, SysStringLen(*value.pbstrVal)) : nullptr;
      break;
    case VT_DISPATCH:
      plain.vt = VT_DISPATCH;
      plain.pdispVal = *value.ppdispVal;
      if (plain.pdispVal) plain.pdispVal->AddRef();
      break;
    case VT_VARIANT:
      // One level only, as automation allows.
      if (value.pvarVal->vt & VT_BYREF) return DISP_E_TYPEMISMATCH;
      LcGlfVariant::Copy(*value.pvarVal, plain);
      break;
    default: return DISP_E_TYPEMISMATCH;
  }
  value = plain;  // the original referred to storage it doesn't own
  return S_OK;
}
}  // namespace

HRESULT LcGlfVariant::ChangeType(VARIANT& value, VARTYPE type) {
  HRESULT hr = Dereference(value);
  // A value of the wanted type stays as it is: a null string stays null.
  if (SUCCEEDED(hr) && type != VT_VARIANT && value.vt != type) hr = VariantChangeType(&value, &value, 0, type);
  if (FAILED(hr)) {
    VariantClear(&value);
    return hr;
  }
  // Hosts answer true as any non-zero value.
  if (value.vt == VT_BOOL) value.boolVal = value.boolVal ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

void LcGlfVariant::Copy(const VARIANT& from, VARIANT& to) {
  to = from;
  if ((to.vt == VT_DISPATCH || to.vt == VT_UNKNOWN) && to.punkVal) to.punkVal->AddRef();
  if (to.vt == VT_BSTR && to.bstrVal) to.bstrVal = SysAllocStringLen(to.bstrVal, SysStringLen(to.bstrVal));
}

namespace {
VARIANT Typed(VARTYPE type) {
  VARIANT v;
  VariantInit(&v);
  v.vt = type;
  return v;
}
}  // namespace

VARIANT LcGlfVariant::Bool(bool value) {
  VARIANT v = Typed(VT_BOOL);
  v.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return v;
}

VARIANT LcGlfVariant::I4(LONG value) {
  VARIANT v = Typed(VT_I4);
  v.lVal = value;
  return v;
}

VARIANT LcGlfVariant::Double(double value) {
  VARIANT v = Typed(VT_R8);
  v.dblVal = value;
  return v;
}

VARIANT LcGlfVariant::Dispatch(IDispatch* value) {
  VARIANT v = Typed(VT_DISPATCH);
  v.pdispVal = value;
  return v;
}

VARIANT LcGlfVariant::Text(BSTR value) {
  VARIANT v = Typed(VT_BSTR);
  v.bstrVal = value;
  return v;
}

VARIANT LcGlfVariant::DoubleRef(double* value) {
  VARIANT v = Typed(VT_R8 | VT_BYREF);
  v.pdblVal = value;
  return v;
}

VARIANT LcGlfVariant::DispatchRef(IDispatch** value) {
  VARIANT v = Typed(VT_DISPATCH | VT_BYREF);
  v.ppdispVal = value;
  return v;
}
