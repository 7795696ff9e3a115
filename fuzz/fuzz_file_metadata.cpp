#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "filestream/LcUFileMetaData.h"
#include "serial/LcUJsonStream.h"

// Metadata loaded from any JSON text is saved and loaded back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  LcUJsonStream reader;
  if (!reader.LoadText(text.c_str())) return 0;
  LcUFileMetaData loaded;
  loaded.Load(reader);
  LcUJsonStream writer;
  loaded.Save(writer);
  LcUStringA saved;
  // A text the writer cannot encode, such as a lone surrogate, is refused
  // whole; that is the stream's own rule.
  if (!writer.PrintText(false, saved)) return 0;
  LcUJsonStream again;
  if (!again.LoadText(saved.Get())) std::abort();
  LcUFileMetaData back;
  if (!back.Load(again) || back.GetMask() != loaded.GetMask()) std::abort();
  if (back.GetModificationTime() != loaded.GetModificationTime() || back.GetFileSize() != loaded.GetFileSize() ||
      back.GetPermissions() != loaded.GetPermissions() || back.GetRevisionId() != loaded.GetRevisionId())
    std::abort();
  return 0;
}
