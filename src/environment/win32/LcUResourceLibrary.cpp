#include "environment/LcUResourceLibrary.h"

#include <windows.h>

const char16_t* const LcUResourceLibrary::kExtension = u"dll";

void* LcUResourceLibrary::LoadAsData(const char16_t* path) {
  return LoadLibraryExW(reinterpret_cast<const wchar_t*>(path), nullptr, LOAD_LIBRARY_AS_DATAFILE);
}
