#include "addin/CTWVeerbackGlfModule.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>

#include "addin/LcGlfRegistrar.h"
#include "addin/LcGlfRegistryScript.h"
#include "foundation/LcUString.h"

uint32_t CTWVeerbackGlfModule::GetModuleFileName(char16_t* buffer, uint32_t size) const {
  if (!buffer || size == 0) return 0;
  // The shared object (or program) holding this code.
  Dl_info info;
  char resolved[PATH_MAX];
  if (!dladdr(reinterpret_cast<const void*>(&CTWVeerbackGlfModule::Get), &info) || !info.dli_fname ||
      !realpath(info.dli_fname, resolved))
    return 0;
  LcUString path;
  if (!LcUString::UTF8ToUTF16(resolved, -1, path)) return 0;
  // As on Windows: a path that doesn't fit is cut, terminated, and answered with size.
  uint32_t length = uint32_t(path.Length());
  uint32_t copy = length < size ? length : size - 1;
  for (uint32_t i = 0; i < copy; ++i) buffer[i] = path[int32_t(i)];
  buffer[copy] = 0;
  return length < size ? length : size;
}

namespace {
constexpr uint32_t kPathUnits = 4096;
// The registry script, built in from TWVeerbackGlf.rgs.
const char kScript[] =
#include "TWVeerbackGlfScript.inc"
    ;

// The script with the module's own path put in.
HRESULT LoadOwnScript(LcGlfRegistryScript& script) {
  char16_t path[kPathUnits];
  uint32_t length = CTWVeerbackGlfModule::Get().GetModuleFileName(path, kPathUnits);
  if (length == 0 || length == kPathUnits) return E_FAIL;
  return script.Parse(kScript, int64_t(sizeof kScript - 1), path) ? S_OK : E_UNEXPECTED;
}
}  // namespace

// Into the user's Software\Classes of the registry store, where a Linux
// host looks the class up.
HRESULT CTWVeerbackGlfModule::RegisterServer() {
  LcGlfRegistryScript script;
  HRESULT hr = LoadOwnScript(script);
  return FAILED(hr) ? hr : LcGlfRegistrar::Register(script);
}

HRESULT CTWVeerbackGlfModule::UnregisterServer() {
  LcGlfRegistryScript script;
  HRESULT hr = LoadOwnScript(script);
  return FAILED(hr) ? hr : LcGlfRegistrar::Unregister(script);
}

// Linux has no type libraries: callers bind by the dispatch identifiers.
HRESULT CTWVeerbackGlfModule::GetTypeInfo(ITypeInfo** info) {
  *info = nullptr;
  return TYPE_E_LIBNOTREGISTERED;
}

bool CTWVeerbackGlfModule::HasTypeInfo() {
  return false;
}
