#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "filestream/LcUCacheDescription.h"
#include "filestream/LcUFileMetaData.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUString.h"
#include "serial/LcUJsonStream.h"

// A description file of any bytes: accepted only with a URI, and what is
// accepted writes back to a description that reads the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = LcUMemory::Initialize() && LcUString::Initialize() && LcUJsonStream::Initialize();
  (void)started;
  std::string text(reinterpret_cast<const char*>(data), size);
  LcUString uri;
  LcUFileMetaData info;
  if (!LcUCacheDescription::Parse(text.c_str(), uri, info)) return 0;
  if (uri.IsEmpty()) std::abort();
  LcUStringA again;
  if (!LcUCacheDescription::Compose(uri.Get(), info, again)) std::abort();
  LcUString uriBack;
  LcUFileMetaData infoBack;
  if (!LcUCacheDescription::Parse(again.Get(), uriBack, infoBack)) std::abort();
  if (uriBack != uri || infoBack.GetMask() != info.GetMask() || infoBack.GetFileSize() != info.GetFileSize() ||
      infoBack.GetModificationTime() != info.GetModificationTime() || infoBack.GetRevisionId() != info.GetRevisionId() ||
      infoBack.GetPermissions() != info.GetPermissions())
    std::abort();
  return 0;
}
