#include "VeerbackPlatform.h"

#include <unistd.h>

#include "VeerbackOutput.h"
#include "environment/posix/LcUSysPath.h"

void VeerbackPlatform::GetArguments(int argc, char** argv, std::vector<LcUString>& arguments) {
  for (int i = 0; i < argc; ++i) {
    arguments.emplace_back();
    LcUString::UTF8ToUTF16(argv[i], -1, arguments.back());
  }
}

bool VeerbackPlatform::CheckRegistration() {
  // The add-in registers into the registry store, which Linux gains with the
  // registry component; a Linux host finds the module by its path instead.
  std::puts("  -     not checked: Linux has no registration of the add-in yet");
  return true;
}

bool VeerbackPlatform::IsFolderWritable(const char16_t* folder) {
  LcUStringA native;
  return LcUSysPath::ToNative(folder, native) && access(native.Get(), W_OK | X_OK) == 0;
}
