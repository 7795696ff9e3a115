#pragma once
#include <cstdint>

#include "addin/LcGlfCom.h"

// The module object, one per process: its lock count, its instance handle
// and what registration needs of it.
class CTWVeerbackGlfModule {
public:
  static CTWVeerbackGlfModule& Get();

  void Lock() { ++locks; }
  void Unlock() { --locks; }
  LONG GetLockCount() const { return locks; }

  void SetInstance(void* handle) { instance = handle; }
  void* GetInstance() const { return instance; }

  // As GetModuleFileNameW: the length written, size when the path didn't
  // fit (the buffer then holds it cut and terminated), 0 on failure.
  uint32_t GetModuleFileName(char16_t* buffer, uint32_t size) const;

  // The registry script REGISTRY 102 with %MODULE% replaced, and the type library.
  HRESULT RegisterServer();
  HRESULT UnregisterServer();
  // The server interface's description from the module's type library,
  // with a reference for the caller.
  HRESULT GetTypeInfo(ITypeInfo** info);
  bool HasTypeInfo();

private:
  LONG locks = 0;
  void* instance = nullptr;
  ITypeInfo* typeInfo = nullptr;
};
