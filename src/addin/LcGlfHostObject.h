#pragma once
#include <cstdint>

#include "addin/LcGlfCom.h"
#include "addin/LcGlfHostRoles.h"

// A host object held for one step and released on every way out. Calls go
// through the quiet dispatch routine and return its result; calling through
// a null object raises E_POINTER, as a call through a null interface does.
class LcGlfHostObject {
public:
  LcGlfHostObject() = default;
  // Takes the reference it is given.
  explicit LcGlfHostObject(IDispatch* owned) : object(owned) {}
  ~LcGlfHostObject() { Reset(); }
  LcGlfHostObject(const LcGlfHostObject&) = delete;
  LcGlfHostObject& operator=(const LcGlfHostObject&) = delete;

  IDispatch* Get() const { return object; }
  bool IsNull() const { return object == nullptr; }
  void Reset();
  // Holds other's object too, with a reference of its own.
  void Share(const LcGlfHostObject& other);
  LcGlfHostObject& operator=(LcGlfHostObject&& other) noexcept;

  // Property reads and method calls; args in the caller's order.
  HRESULT Call(LcGlfHostRole role, WORD kind, VARTYPE resultType, VARIANT* result, const VARIANT* args = nullptr,
               UINT count = 0) const;
  HRESULT GetObject(LcGlfHostRole role, LcGlfHostObject& value, const VARIANT* args = nullptr, UINT count = 0) const;
  HRESULT Put(LcGlfHostRole role, const VARIANT& value) const;
  HRESULT PutDouble(LcGlfHostRole role, double value) const;
  HRESULT PutObject(LcGlfHostRole role, const LcGlfHostObject& value) const;
  HRESULT PutBool(LcGlfHostRole role, bool value) const;
  // A method taking one host object.
  HRESULT CallWithObject(LcGlfHostRole role, const LcGlfHostObject& argument) const;
  HRESULT Method(LcGlfHostRole role) const { return Call(role, DISPATCH_METHOD, VT_EMPTY, nullptr); }
  // The raising form: a failed call raises its result.
  void GetObjectOrRaise(LcGlfHostRole role, LcGlfHostObject& value) const;
  // E_NOINTERFACE comes back as a null answer; any other refusal raises.
  void Query(REFIID iid, LcGlfHostObject& value) const;

private:
  IDispatch* Checked() const;
  IDispatch* object = nullptr;
};

// Text for the host: a BSTR released on every way out. A failed allocation raises E_OUTOFMEMORY.
class LcGlfBstr {
public:
  explicit LcGlfBstr(const char16_t* text, int32_t length = -1);
  ~LcGlfBstr() { SysFreeString(text); }
  LcGlfBstr(const LcGlfBstr&) = delete;
  LcGlfBstr& operator=(const LcGlfBstr&) = delete;
  BSTR Get() const { return text; }
  VARIANT AsVariant() const;

private:
  BSTR text;
};
