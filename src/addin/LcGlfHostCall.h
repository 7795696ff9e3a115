#pragma once
#include "addin/LcGlfCom.h"

// The one routine through which the add-in calls the host: late-bound
// IDispatch::Invoke with a fixed identifier, kind and result type.
class LcGlfHostCall {
public:
  // args are in the caller's order; DISPPARAMS gets them last first, and a
  // put names its single argument DISPID_PROPERTYPUT. The result, when
  // wanted, is coerced to resultType (a boolean to -1 or 0). E_POINTER for a
  // null object, E_INVALIDARG for a put without arguments. A host exception
  // returns the host's scode and leaves its details on the thread.
  static HRESULT Invoke(IDispatch* object, DISPID id, WORD kind, VARTYPE resultType, VARIANT* result,
                        const VARIANT* args = nullptr, UINT argCount = 0);
  // A property that is a host object; *value is null on failure.
  static HRESULT GetObject(IDispatch* object, DISPID id, IDispatch** value);
};
