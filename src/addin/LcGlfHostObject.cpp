#include "addin/LcGlfHostObject.h"

#include "addin/LcGlfComError.h"
#include "addin/LcGlfHostCall.h"
#include "addin/LcGlfVariant.h"

void LcGlfHostObject::Reset() {
  if (object) object->Release();
  object = nullptr;
}

void LcGlfHostObject::Share(const LcGlfHostObject& other) {
  if (other.object) other.object->AddRef();
  Reset();
  object = other.object;
}

LcGlfHostObject& LcGlfHostObject::operator=(LcGlfHostObject&& other) noexcept {
  if (this != &other) {
    Reset();
    object = other.object;
    other.object = nullptr;
  }
  return *this;
}

IDispatch* LcGlfHostObject::Checked() const {
  if (!object) LcGlfRaise(E_POINTER);
  return object;
}

HRESULT LcGlfHostObject::Call(LcGlfHostRole role, WORD kind, VARTYPE resultType, VARIANT* result, const VARIANT* args,
                              UINT count) const {
  return LcGlfHostCall::Invoke(Checked(), role, kind, resultType, result, args, count);
}

HRESULT LcGlfHostObject::GetObject(LcGlfHostRole role, LcGlfHostObject& value, const VARIANT* args,
                                   UINT count) const {
  value.Reset();
  VARIANT result;
  HRESULT hr = Call(role, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, args, count);
  if (SUCCEEDED(hr)) value.object = result.pdispVal;
  return hr;
}

HRESULT LcGlfHostObject::Put(LcGlfHostRole role, const VARIANT& value) const {
  return Call(role, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, &value, 1);
}

HRESULT LcGlfHostObject::PutDouble(LcGlfHostRole role, double value) const {
  return Put(role, LcGlfVariant::Double(value));
}

HRESULT LcGlfHostObject::PutObject(LcGlfHostRole role, const LcGlfHostObject& value) const {
  return Put(role, LcGlfVariant::Dispatch(value.object));
}

HRESULT LcGlfHostObject::PutBool(LcGlfHostRole role, bool value) const {
  return Put(role, LcGlfVariant::Bool(value));
}

HRESULT LcGlfHostObject::CallWithObject(LcGlfHostRole role, const LcGlfHostObject& argument) const {
  VARIANT v = LcGlfVariant::Dispatch(argument.object);
  return Call(role, DISPATCH_METHOD, VT_EMPTY, nullptr, &v, 1);
}

void LcGlfHostObject::GetObjectOrRaise(LcGlfHostRole role, LcGlfHostObject& value) const {
  HRESULT hr = GetObject(role, value);
  if (FAILED(hr)) LcGlfRaise(hr);
}

void LcGlfHostObject::Query(REFIID iid, LcGlfHostObject& value) const {
  value.Reset();
  IDispatch* answer = nullptr;
  HRESULT hr = Checked()->QueryInterface(iid, reinterpret_cast<void**>(&answer));
  if (hr == E_NOINTERFACE) return;
  if (FAILED(hr)) LcGlfRaise(hr);
  value.object = answer;
}

LcGlfBstr::LcGlfBstr(const char16_t* source, int32_t length) {
  if (length < 0) {
    length = 0;
    while (source && source[length]) ++length;
  }
  text = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(source), UINT(length));
  if (!text) LcGlfRaise(E_OUTOFMEMORY);
}

VARIANT LcGlfBstr::AsVariant() const {
  return LcGlfVariant::Text(text);
}
