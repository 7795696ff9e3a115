#include "VeerbackPlatform.h"

#include <dlfcn.h>
#include <unistd.h>

#include "environment/posix/LcUSysPath.h"

void VeerbackPlatform::GetArguments(int argc, char** argv, std::vector<LcUString>& arguments) {
  for (int i = 0; i < argc; ++i) {
    arguments.emplace_back();
    LcUString::UTF8ToUTF16(argv[i], -1, arguments.back());
  }
}

VeerbackPlatform::Call VeerbackPlatform::CallServerFunction(const char16_t* module, const char* function,
                                                            HRESULT& result, std::string& error) {
  LcUStringA native;
  void* handle = LcUSysPath::ToNative(module, native) ? dlopen(native.Get(), RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (!handle) {
    const char* why = dlerror();
    error = why ? why : "not a path";
    return eNOT_LOADED;
  }
  auto call = reinterpret_cast<HRESULT (*)()>(dlsym(handle, function));
  if (call) result = call();
  dlclose(handle);
  return call ? eCALLED : eNO_FUNCTION;
}

bool VeerbackPlatform::IsFolderWritable(const char16_t* folder) {
  LcUStringA native;
  return LcUSysPath::ToNative(folder, native) && access(native.Get(), W_OK | X_OK) == 0;
}
