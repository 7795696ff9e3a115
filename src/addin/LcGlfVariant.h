#pragma once
#include "addin/LcGlfCom.h"

// Coercion of automation values between the types the host calls use.
class LcGlfVariant {
public:
  // Converts value in place to type (VT_VARIANT for any) as the platform's
  // VariantChangeType does; by-reference values are read through. A failed
  // conversion returns its result and leaves value cleared.
  static HRESULT ChangeType(VARIANT& value, VARTYPE type);
  // A copy holding its own references, for values the caller must not disturb.
  static void Copy(const VARIANT& from, VARIANT& to);

  // Plain values to pass; they hold no references.
  static VARIANT Bool(bool value);
  static VARIANT I4(LONG value);
  static VARIANT Double(double value);
  static VARIANT Dispatch(IDispatch* value);
  static VARIANT Text(BSTR value);
  static VARIANT DoubleRef(double* value);
  static VARIANT DispatchRef(IDispatch** value);
};
