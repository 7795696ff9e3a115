#include "environment/LcUResourceLibrary.h"

#include <dlfcn.h>

#include "environment/posix/LcUSysPath.h"

const char16_t* const LcUResourceLibrary::kExtension = u"so";

void* LcUResourceLibrary::LoadAsData(const char16_t* path) {
  LcUStringA native;
  if (!LcUSysPath::ToNative(path, native)) return nullptr;
  // Lazy binding and local symbols: nothing of it is meant to be called.
  return dlopen(native.Get(), RTLD_LAZY | RTLD_LOCAL);
}
