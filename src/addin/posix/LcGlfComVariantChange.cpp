#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

#include "addin/posix/LcGlfComTypes.h"

namespace {
// A value on its way between two types: whole numbers exactly, the rest as doubles.
struct Number {
  bool whole;
  int64_t integer;
  bool isUnsigned;  // integer holds the bits of a value above INT64_MAX
  double real;
  double AsReal() const { return whole ? (isUnsigned ? double(uint64_t(integer)) : double(integer)) : real; }
};

Number Whole(int64_t value, bool isUnsigned = false) { return {true, value, isUnsigned, 0}; }
Number Real(double value) { return {false, 0, false, value}; }

bool IsSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

bool EqualsIgnoringCase(const std::u16string& text, const char* word) {
  size_t i = 0;
  for (; word[i]; ++i)
    if (i >= text.size() || (text[i] | 0x20) != word[i]) return false;
  return i == text.size();
}

// A number in text as the invariant locale writes it: spaces around, a sign,
// thousands separators, a fraction and an exponent; or &H and &O integers.
HRESULT ParseNumber(BSTR text, Number& number) {
  std::u16string trimmed(text ? text : u"", SysStringLen(text));
  while (!trimmed.empty() && IsSpace(trimmed.back())) trimmed.pop_back();
  size_t start = 0;
  while (start < trimmed.size() && IsSpace(trimmed[start])) ++start;
  trimmed.erase(0, start);
  if (trimmed.size() > 2 && trimmed[0] == u'&') {
    int base = (trimmed[1] | 0x20) == u'h' ? 16 : (trimmed[1] | 0x20) == u'o' ? 8 : 0;
    if (base == 0) return DISP_E_TYPEMISMATCH;
    for (size_t i = 2; i < trimmed.size(); ++i)
      if (trimmed[i] > 0x7F) return DISP_E_TYPEMISMATCH;
    std::string digits(trimmed.begin() + 2, trimmed.end());
    uint64_t value = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error != std::errc() || end != digits.data() + digits.size()) return DISP_E_TYPEMISMATCH;
    number = Whole(int64_t(value), value > uint64_t(INT64_MAX));
    return S_OK;
  }
  std::string plain;
  bool negative = false, digit = false;
  size_t i = 0;
  if (i < trimmed.size() && (trimmed[i] == u'+' || trimmed[i] == u'-')) negative = trimmed[i++] == u'-';
  for (; i < trimmed.size(); ++i) {
    char16_t c = trimmed[i];
    if (c == u',') continue;
    if (c == 0 || c > 0x7F || !std::strchr("0123456789.eE+-", char(c))) return DISP_E_TYPEMISMATCH;
    digit = digit || (c >= u'0' && c <= u'9');
    plain += char(c);
  }
  if (!digit) return DISP_E_TYPEMISMATCH;
  double value = 0;
  auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (error != std::errc() || end != plain.data() + plain.size()) return DISP_E_TYPEMISMATCH;
  number = Real(negative ? -value : value);
  return S_OK;
}

HRESULT ToNumber(const VARIANT& value, Number& number);

// An object answers with its value property.
HRESULT DefaultValue(IDispatch* object, VARTYPE type, VARIANT& answer) {
  if (!object) return DISP_E_BADVARTYPE;
  DISPPARAMS none = {nullptr, nullptr, 0, 0};
  VARIANT result;
  VariantInit(&result);
  HRESULT hr = object->Invoke(0, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr);
  if (FAILED(hr)) return hr;
  if (result.vt == VT_DISPATCH || result.vt == VT_UNKNOWN) {
    VariantClear(&result);
    return DISP_E_TYPEMISMATCH;
  }
  hr = VariantChangeType(&answer, &result, 0, type);
  VariantClear(&result);
  return hr;
}

HRESULT ToNumber(const VARIANT& value, Number& number) {
  switch (value.vt) {
    case VT_EMPTY: number = Whole(0); return S_OK;
    case VT_I1: number = Whole(value.cVal); return S_OK;
    case VT_I2: number = Whole(value.iVal); return S_OK;
    case VT_I4: number = Whole(value.lVal); return S_OK;
    case VT_INT: number = Whole(value.intVal); return S_OK;
    case VT_BOOL: number = Whole(value.boolVal); return S_OK;
    case VT_UI1: number = Whole(value.bVal); return S_OK;
    case VT_UI2: number = Whole(value.uiVal); return S_OK;
    case VT_UI4: number = Whole(value.ulVal); return S_OK;
    case VT_UINT: number = Whole(value.uintVal); return S_OK;
    case VT_I8: number = Whole(value.llVal); return S_OK;
    case VT_UI8: number = Whole(int64_t(value.ullVal), value.ullVal > uint64_t(INT64_MAX)); return S_OK;
    case VT_R4: number = Real(value.fltVal); return S_OK;
    case VT_R8: number = Real(value.dblVal); return S_OK;
    case VT_DATE: number = Real(value.date); return S_OK;
    case VT_CY: number = Real(double(value.cyVal.int64) / 10000.0); return S_OK;
    case VT_BSTR: return ParseNumber(value.bstrVal, number);
    default: return DISP_E_TYPEMISMATCH;
  }
}

// Halves go to the even neighbour, as automation rounds.
HRESULT ToI4(const Number& number, VARTYPE from, LONG& out) {
  if (number.whole) {
    // The two 32-bit types share their bits.
    if (from == VT_UI4 || from == VT_UINT) {
      out = LONG(uint32_t(number.integer));
      return S_OK;
    }
    if (number.isUnsigned || number.integer < INT32_MIN || number.integer > INT32_MAX) return DISP_E_OVERFLOW;
    out = LONG(number.integer);
    return S_OK;
  }
  double real = number.real;
  if (!(real >= -2147483648.5 && real < 2147483647.5)) return DISP_E_OVERFLOW;
  out = LONG(std::nearbyint(real));
  return S_OK;
}

HRESULT ToText(const VARIANT& value, BSTR& out) {
  char buffer[64];
  char* end = buffer;
  switch (value.vt) {
    case VT_EMPTY: break;
    case VT_R4:
    case VT_R8: {
      // Fifteen significant digits for a double, seven for a float, as %G writes them.
      double real = value.vt == VT_R4 ? double(value.fltVal) : value.dblVal;
      end = std::to_chars(buffer, buffer + sizeof buffer, real, std::chars_format::general,
                          value.vt == VT_R4 ? 7 : 15).ptr;
      for (char* c = buffer; c < end; ++c)
        if (*c == 'e') *c = 'E';
      break;
    }
    case VT_CY: {
      Number n = {};
      ToNumber(value, n);
      end = std::to_chars(buffer, buffer + sizeof buffer, n.real, std::chars_format::general, 19).ptr;
      break;
    }
    default: {
      Number n = {};
      if (FAILED(ToNumber(value, n)) || !n.whole || value.vt == VT_BSTR) return DISP_E_TYPEMISMATCH;
      end = n.isUnsigned ? std::to_chars(buffer, buffer + sizeof buffer, uint64_t(n.integer)).ptr
                         : std::to_chars(buffer, buffer + sizeof buffer, n.integer).ptr;
    }
  }
  std::u16string wide(buffer, end);
  out = SysAllocStringLen(wide.data(), UINT(wide.size()));
  return out ? S_OK : E_OUTOFMEMORY;
}

HRESULT Coerce(const VARIANT& from, VARTYPE type, VARIANT& to) {
  VariantInit(&to);
  if (from.vt == VT_NULL || from.vt == VT_ERROR) return DISP_E_TYPEMISMATCH;
  if (type == VT_DISPATCH) {
    if (from.vt != VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
    IDispatch* object = nullptr;
    if (from.punkVal) {
      HRESULT hr = from.punkVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object));
      if (FAILED(hr)) return hr;
    }
    to.vt = VT_DISPATCH;
    to.pdispVal = object;
    return S_OK;
  }
  if (from.vt == VT_UNKNOWN) return DISP_E_TYPEMISMATCH;
  if (from.vt == VT_DISPATCH) return DefaultValue(from.pdispVal, type, to);
  if (type == VT_BSTR) {
    if (from.vt == VT_DATE) return DISP_E_TYPEMISMATCH;
    BSTR text = nullptr;
    HRESULT hr = ToText(from, text);
    if (FAILED(hr)) return hr;
    to.vt = VT_BSTR;
    to.bstrVal = text;
    return S_OK;
  }
  Number number = {};
  if (type == VT_BOOL && from.vt == VT_BSTR) {
    std::u16string text(from.bstrVal ? from.bstrVal : u"", SysStringLen(from.bstrVal));
    if (EqualsIgnoringCase(text, "true") || EqualsIgnoringCase(text, "false")) {
      to.vt = VT_BOOL;
      to.boolVal = (text[0] | 0x20) == u't' ? VARIANT_TRUE : VARIANT_FALSE;
      return S_OK;
    }
  }
  HRESULT hr = ToNumber(from, number);
  if (FAILED(hr)) return hr;
  switch (type) {
    case VT_BOOL:
      to.boolVal = (number.whole ? number.integer != 0 : number.real != 0) ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case VT_I4:
      hr = ToI4(number, from.vt, to.lVal);
      if (FAILED(hr)) return hr;
      break;
    case VT_R8: to.dblVal = number.AsReal(); break;
    case VT_R4: to.fltVal = float(number.AsReal()); break;
    default: return DISP_E_TYPEMISMATCH;
  }
  to.vt = type;
  return S_OK;
}
}  // namespace

HRESULT VariantChangeType(VARIANT* dest, const VARIANT* src, unsigned short, VARTYPE type) {
  if (!dest || !src) return E_INVALIDARG;
  if (src->vt & VT_BYREF) return DISP_E_TYPEMISMATCH;
  VARIANT result;
  if (src->vt == type) {
    if (dest == src) return S_OK;
    result = *src;
    if ((type == VT_DISPATCH || type == VT_UNKNOWN) && result.punkVal) result.punkVal->AddRef();
    if (type == VT_BSTR) result.bstrVal = SysAllocStringLen(src->bstrVal, SysStringLen(src->bstrVal));
  } else {
    HRESULT hr = Coerce(*src, type, result);
    if (FAILED(hr)) return hr;  // dest untouched
  }
  VariantClear(dest);
  *dest = result;
  return S_OK;
}
