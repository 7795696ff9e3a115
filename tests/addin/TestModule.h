#pragma once
#include <string>

#include "addin/LcGlfCom.h"

// The add-in module loaded as a host loads it, and its exported functions.
class TestModule {
public:
  explicit TestModule(const std::string& path);
  ~TestModule();
  bool IsLoaded() const { return handle != nullptr; }

  HRESULT GetClassObject(REFCLSID clsid, REFIID riid, void** object);
  HRESULT CanUnloadNow();
  // DllRegisterServer, or DllUnregisterServer.
  HRESULT RegisterServer(bool install);
  int PurifyIsRunning();
  // Handles TrackBack notifications waiting on this thread, as a host's loop does.
  void Pump();

private:
  void* Symbol(const char* name);
  void* handle = nullptr;
};
