#pragma once
#include "addin/LcGlfCom.h"

// Windows takes the names from the module definition file.
#if defined(_WIN32)
#define TW_EXPORT extern "C"
#else
#define TW_EXPORT extern "C" __attribute__((visibility("default")))
#endif

TW_EXPORT HRESULT DllCanUnloadNow();
TW_EXPORT HRESULT DllGetClassObject(REFCLSID clsid, REFIID riid, void** object);
TW_EXPORT HRESULT DllRegisterServer();
TW_EXPORT HRESULT DllUnregisterServer();
TW_EXPORT int PurifyIsRunning();
