#pragma once
// The subset of COM's binary interface that the add-in and its hosts use,
// laid out as on 64-bit Windows so the host-facing code is one source.
#include <cstdint>
#include <cstring>

typedef int32_t HRESULT;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef uint32_t DWORD;
typedef uint16_t WORD;
typedef uint32_t UINT;
typedef int32_t BOOL;
typedef int32_t INT;
typedef char16_t OLECHAR;
typedef OLECHAR* BSTR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;
typedef int16_t VARIANT_BOOL;
typedef int32_t DISPID;
typedef uint32_t LCID;
typedef uint16_t VARTYPE;
typedef int16_t SHORT;
typedef double DOUBLE;
typedef int32_t SCODE;
typedef float FLOAT;
typedef double DATE;
typedef int64_t LONGLONG;
typedef uint64_t ULONGLONG;
union CY {
  int64_t int64;
};

struct GUID {
  uint32_t Data1;
  uint16_t Data2;
  uint16_t Data3;
  uint8_t Data4[8];
};
typedef GUID IID;
typedef GUID CLSID;
typedef const IID& REFIID;
typedef const CLSID& REFCLSID;
typedef const GUID& REFGUID;

inline bool IsEqualGUID(REFGUID a, REFGUID b) { return std::memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool operator==(REFGUID a, REFGUID b) { return IsEqualGUID(a, b); }
inline bool operator!=(REFGUID a, REFGUID b) { return !IsEqualGUID(a, b); }

#define STDMETHODCALLTYPE
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)
#define VARIANT_TRUE (static_cast<VARIANT_BOOL>(-1))
#define VARIANT_FALSE (static_cast<VARIANT_BOOL>(0))

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFF);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);
constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110);
constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111);
constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154);
constexpr HRESULT DISP_E_UNKNOWNINTERFACE = static_cast<HRESULT>(0x80020001);
constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003);
constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004);
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005);
constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006);
constexpr HRESULT DISP_E_NONAMEDARGS = static_cast<HRESULT>(0x80020007);
constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008);
constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009);
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000A);
constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000E);
constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = static_cast<HRESULT>(0x8002000F);
constexpr HRESULT TYPE_E_LIBNOTREGISTERED = static_cast<HRESULT>(0x8002801D);

enum VARENUM : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_BYREF = 0x4000
};

constexpr WORD DISPATCH_METHOD = 1;
constexpr WORD DISPATCH_PROPERTYGET = 2;
constexpr WORD DISPATCH_PROPERTYPUT = 4;
constexpr DISPID DISPID_PROPERTYPUT = -3;
constexpr DISPID DISPID_UNKNOWN = -1;

struct IUnknown;
struct IDispatch;
struct ITypeInfo;

struct VARIANT {
  VARTYPE vt;
  WORD wReserved1;
  WORD wReserved2;
  WORD wReserved3;
  union {
    LONG lVal;
    SHORT iVal;
    int8_t cVal;
    uint8_t bVal;
    uint16_t uiVal;
    ULONG ulVal;
    LONGLONG llVal;
    ULONGLONG ullVal;
    INT intVal;
    UINT uintVal;
    FLOAT fltVal;
    DOUBLE dblVal;
    CY cyVal;
    DATE date;
    VARIANT_BOOL boolVal;
    SCODE scode;
    BSTR bstrVal;
    IUnknown* punkVal;
    IDispatch* pdispVal;
    LONG* plVal;
    DOUBLE* pdblVal;
    VARIANT_BOOL* pboolVal;
    BSTR* pbstrVal;
    IDispatch** ppdispVal;
    VARIANT* pvarVal;
    uint8_t padding[16];
  };
};
typedef VARIANT VARIANTARG;
static_assert(sizeof(VARIANT) == 24, "VARIANT is 24 bytes on 64-bit Windows");

struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  void* pvReserved;
  HRESULT (*pfnDeferredFillIn)(EXCEPINFO*);
  SCODE scode;
};

struct IUnknown {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) = 0;
  virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
  virtual ULONG STDMETHODCALLTYPE Release() = 0;
};

struct IClassFactory : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) = 0;
  virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};

struct IDispatch : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID lcid,
                                                  DISPID* ids) = 0;
  virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                           VARIANT* result, EXCEPINFO* exception, UINT* argError) = 0;
};

extern const IID IID_IUnknown;
extern const IID IID_IDispatch;
extern const IID IID_IClassFactory;
extern const IID IID_NULL;

// BSTR: a length prefix of 4 bytes before the text, which is terminated.
BSTR SysAllocString(const OLECHAR* text);
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
void SysFreeString(BSTR text);
UINT SysStringLen(BSTR text);
void VariantInit(VARIANT* value);
HRESULT VariantClear(VARIANT* value);
// The automation conversions between the value types above, by the rules of
// the Windows call of the same name with the invariant locale; dest may be src.
HRESULT VariantChangeType(VARIANT* dest, const VARIANT* src, unsigned short flags, VARTYPE type);
