#include "addin/posix/LcGlfComTypes.h"

#include <cstdlib>

const IID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_NULL = {0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
  auto* block = static_cast<uint8_t*>(std::malloc(sizeof(uint32_t) + (size_t(length) + 1) * sizeof(OLECHAR)));
  if (!block) return nullptr;
  uint32_t bytes = length * sizeof(OLECHAR);
  std::memcpy(block, &bytes, sizeof(bytes));
  BSTR result = reinterpret_cast<BSTR>(block + sizeof(uint32_t));
  if (text)
    std::memcpy(result, text, size_t(length) * sizeof(OLECHAR));
  else
    std::memset(result, 0, size_t(length) * sizeof(OLECHAR));
  result[length] = 0;
  return result;
}

BSTR SysAllocString(const OLECHAR* text) {
  if (!text) return nullptr;
  UINT length = 0;
  while (text[length]) ++length;
  return SysAllocStringLen(text, length);
}

void SysFreeString(BSTR text) {
  if (text) std::free(reinterpret_cast<uint8_t*>(text) - sizeof(uint32_t));
}

UINT SysStringLen(BSTR text) {
  if (!text) return 0;
  uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<uint8_t*>(text) - sizeof(uint32_t), sizeof(bytes));
  return bytes / sizeof(OLECHAR);
}

void VariantInit(VARIANT* value) {
  std::memset(value, 0, sizeof(*value));
}

HRESULT VariantClear(VARIANT* value) {
  if (!value) return E_INVALIDARG;
  switch (value->vt) {
    case VT_BSTR: SysFreeString(value->bstrVal); break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      if (value->punkVal) value->punkVal->Release();
      break;
    default: break;
  }
  VariantInit(value);
  return S_OK;
}
