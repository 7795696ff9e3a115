#include "HostSimCall.h"

#include "HostSim.h"
#include "HostSimObject.h"

namespace {
bool Fits(HostSimRole::Type type, VARTYPE vt) {
  switch (type) {
    case HostSimRole::eI4: return vt == VT_I4;
    case HostSimRole::eR8: return vt == VT_R8;
    case HostSimRole::eBSTR: return vt == VT_BSTR;
    case HostSimRole::eBOOL: return vt == VT_BOOL;
    case HostSimRole::eDISPATCH: return vt == VT_DISPATCH;
    case HostSimRole::eVARIANT: return true;
    case HostSimRole::eR8_OUT: return vt == (VT_BYREF | VT_R8);
    case HostSimRole::eDISPATCH_OUT: return vt == (VT_BYREF | VT_DISPATCH);
    default: return false;
  }
}

UINT Count(const DISPPARAMS* params) {
  return params ? params->cArgs : 0;
}
}  // namespace

HostSimCall::HostSimCall(HostSimObject& self, DISPPARAMS* params) : host(self.host), self(self), params(params) {
  VariantInit(&result);
}

HostSimCall::~HostSimCall() {
  VariantClear(&result);
}

HRESULT HostSimCall::Check(const HostSimRole& role, UINT* argError) const {
  if (Count(params) && !params->rgvarg) return E_INVALIDARG;
  UINT named = params ? params->cNamedArgs : 0;
  if (role.kind == DISPATCH_PROPERTYPUT) {
    if (named != 1 || !params->rgdispidNamedArgs || params->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
      return DISP_E_PARAMNOTFOUND;
  } else if (named != 0) {
    return DISP_E_NONAMEDARGS;
  }
  if (Count(params) != UINT(role.ArgCount())) return DISP_E_BADPARAMCOUNT;
  for (int i = 0; i < role.ArgCount(); ++i) {
    if (!Fits(role.args[i], Arg(i).vt)) {
      if (argError) *argError = params->cArgs - 1 - UINT(i);
      return DISP_E_TYPEMISMATCH;
    }
    if ((Arg(i).vt & VT_BYREF) && !Arg(i).pdblVal) return E_POINTER;
  }
  return S_OK;
}

VARIANT& HostSimCall::Arg(int position) const {
  return params->rgvarg[params->cArgs - 1 - UINT(position)];
}

std::u16string HostSimCall::String(int position) const {
  BSTR text = Arg(position).bstrVal;
  return text ? std::u16string(reinterpret_cast<const char16_t*>(text), SysStringLen(text)) : std::u16string();
}

HostSimObject* HostSimCall::Object(int position) const {
  IDispatch* pointer = Arg(position).pdispVal;
  return pointer ? host.Find(pointer) : nullptr;
}

std::string HostSimCall::ShowArgs() const {
  std::string text;
  if (!params || !params->rgvarg) return text;
  for (UINT i = 0; i < Count(params); ++i) {
    if (i) text += ", ";
    text += host.Show(Arg(int(i)));
  }
  return text;
}

std::string HostSimCall::ShowResult(const HostSimRole& role) const {
  std::string text = role.result == HostSimRole::eNONE ? "" : host.Show(result);
  // What went out through by-reference arguments reads as part of the result.
  for (int i = 0; i < role.ArgCount(); ++i) {
    VARIANT written;
    VariantInit(&written);
    if (role.args[i] == HostSimRole::eR8_OUT) {
      written.vt = VT_R8;
      written.dblVal = *Arg(i).pdblVal;
    } else if (role.args[i] == HostSimRole::eDISPATCH_OUT) {
      written.vt = VT_DISPATCH;
      written.pdispVal = *Arg(i).ppdispVal;
    } else {
      continue;
    }
    text += (text.empty() ? "" : " ") + host.Show(written);
  }
  return text;
}

void HostSimCall::GiveNull(const HostSimRole& role) {
  VariantClear(&result);
  if (role.result == HostSimRole::eDISPATCH || role.result == HostSimRole::eBSTR)
    result.vt = role.result == HostSimRole::eDISPATCH ? VT_DISPATCH : VT_BSTR;
  for (int i = 0; i < role.ArgCount(); ++i)
    if (role.args[i] == HostSimRole::eDISPATCH_OUT) *Arg(i).ppdispVal = nullptr;
}

HRESULT HostSimCall::GiveObject(HostSimObject* object) {
  VariantClear(&result);
  result.vt = VT_DISPATCH;
  result.pdispVal = object;
  if (object) object->AddRef();
  return S_OK;
}

HRESULT HostSimCall::GiveBool(int16_t value) {
  VariantClear(&result);
  result.vt = VT_BOOL;
  result.boolVal = value;
  return S_OK;
}

HRESULT HostSimCall::GiveI4(int32_t value) {
  VariantClear(&result);
  result.vt = VT_I4;
  result.lVal = value;
  return S_OK;
}

HRESULT HostSimCall::GiveR8(double value) {
  VariantClear(&result);
  result.vt = VT_R8;
  result.dblVal = value;
  return S_OK;
}

HRESULT HostSimCall::GiveString(const std::u16string& value) {
  VariantClear(&result);
  result.vt = VT_BSTR;
  result.bstrVal = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(value.data()), UINT(value.size()));
  return result.bstrVal ? S_OK : E_OUTOFMEMORY;
}

void HostSimCall::TakeResult(VARIANT* target) {
  if (!target) return;
  *target = result;
  VariantInit(&result);
}
