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

bool AsNumber(const VARIANT& value, double& number) {
  switch (value.vt) {
    case VT_I2: number = value.iVal; return true;
    case VT_I4: number = value.lVal; return true;
    case VT_R8: number = value.dblVal; return true;
    case VT_BOOL: number = value.boolVal ? -1 : 0; return true;
    case VT_EMPTY: number = 0; return true;
    default: return false;
  }
}
}  // namespace

HRESULT LcGlfVariant::ChangeType(VARIANT& value, VARTYPE type) {
  HRESULT hr = Dereference(value);
  if (FAILED(hr)) {
    VariantInit(&value);
    return hr;
  }
  if (type == VT_VARIANT || value.vt == type) {
    if (value.vt == VT_BOOL) value.boolVal = value.boolVal ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  double number = 0;
  switch (type) {
    case VT_DISPATCH:
      if (value.vt == VT_EMPTY || value.vt == VT_NULL) {
        value.vt = VT_DISPATCH;
        value.pdispVal = nullptr;
        return S_OK;
      }
      if (value.vt == VT_UNKNOWN) {
        IDispatch* dispatch = nullptr;
        hr = value.punkVal ? value.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch)) : S_OK;
        VariantClear(&value);
        if (FAILED(hr)) return DISP_E_TYPEMISMATCH;
        value.vt = VT_DISPATCH;
        value.pdispVal = dispatch;
        return S_OK;
      }
      break;
    case VT_BOOL:
    case VT_I4:
    case VT_R8:
      if (!AsNumber(value, number)) break;
      VariantClear(&value);
      value.vt = type;
      if (type == VT_BOOL) value.boolVal = number != 0 ? VARIANT_TRUE : VARIANT_FALSE;
      if (type == VT_I4) value.lVal = LONG(number);
      if (type == VT_R8) value.dblVal = number;
      return S_OK;
    default: break;
  }
  VariantClear(&value);
  return DISP_E_TYPEMISMATCH;
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
