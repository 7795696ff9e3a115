#include <cstddef>
#include <cstdint>

#include "foundation/LcUString.h"
#include "geometry/LcLNamedText.h"
#include "geometry/LcNvCamera.h"
#include "serial/LcUData.h"
#include "serial/LcUNameTable.h"
#include "serial/LcUSysXMLProvider.h"
#include "serial/LcUXMLDOMStream.h"
#include "serial/LcUXMLStream.h"

// Any XML text read through the platform's document into variant data, the
// shared element forms and the geometry's elements, as far as it goes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 8192) return 0;
  static bool started = (LcUXMLDOMStream::Initialize(), LcUData::Initialize(),
                         LcUXMLDOMStream::SetProvider(LcUSysXMLProvider::Get()), true);
  (void)started;
  LcUString text;
  LcUString::UTF8ToUTF16(reinterpret_cast<const char*>(data), int32_t(size), text);
  LcUXMLDOMStream* stream = LcUXMLDOMStream::CreateReadStream(text.Get() ? text.Get() : u"", 0);
  if (!stream) return 0;
  LcUNameTable* table = new LcUNameTable;
  LcUStringA name;
  // Each element of the top level, and one level below, by its own reader.
  for (int depth = 0; depth < 2 && stream->NextChildName(name); ++depth) {
    for (int guard = 0; guard < 64 && stream->NextChildName(name); ++guard) {
      const char* element = name.Get();
      if (LcUStringA::Equal(element, "data")) {
        LcUData value;
        stream->version = guard % 2 ? 90 : 441;
        value.SerialiseXML(*stream, table);
      } else if (LcUStringA::Equal(element, "camera")) {
        LcNvCamera camera;
        camera.SerialiseXML(*stream);
      } else if (LcUStringA::Equal(element, "box3f")) {
        LcLBox3f box;
        LcLNamedText::Serialise(*stream, box);
      } else if (LcUStringA::Equal(element, "rotation")) {
        LcLRotation rotation;
        LcLNamedText::Serialise(*stream, rotation);
      } else if (LcUStringA::Equal(element, "date")) {
        int64_t time = 0;
        LcUXMLStream::SerialiseDate(*stream, time, 0);
      } else if (LcUStringA::Equal(element, "name")) {
        LcUName* read = nullptr;
        LcUXMLStream::SerialiseName(*stream, read, 0, table);
        if (read) read->Release();
      } else if (!stream->BeginElement(element, 0)) {
        break;
      } else {
        continue;  // into it: its children are read next
      }
    }
  }
  table->Release();
  LcUXMLDOMStream::DestroyStream(stream);
  return 0;
}
