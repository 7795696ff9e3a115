#include <windows.h>

#include "addin/CTWVeerbackGlfModule.h"

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    CTWVeerbackGlfModule::Get().SetInstance(instance);
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}
