// The registry script parser on arbitrary text: a clean answer or an error
// naming a line, never a crash or a runaway recursion.
#include <cstdlib>

#include "addin/LcGlfRegistryScript.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LcGlfRegistryScript script;
  bool ok = script.Parse(reinterpret_cast<const char*>(data), int64_t(size), u"C:\\x\\it's.dll");
  if (!ok && script.GetError().IsNull()) std::abort();
  return 0;
}
