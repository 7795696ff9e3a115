#include <cstdio>
#include <cstring>

#include "VeerbackCommands.h"
#include "VeerbackOutput.h"
#include "addin/LcOmTrackBackRecord.h"
#include "environment/LcUSysFileHandle.h"

namespace {
// Prints a text field; false when it has no terminator within its units.
bool PrintText(const char* label, const char16_t* field, int32_t units) {
  int32_t n = 0;
  while (n < units && field[n]) ++n;
  std::printf("%-18s \"", label);
  LcUString text(field, n);
  PrintWide(stdout, text.Get());
  std::printf("\"%s\n", n == units ? "  (no terminator)" : "");
  return n < units;
}
}  // namespace

int VeerbackCommands::Inspect(const char16_t* path) {
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_NONE, 0, LcUSysFileHandle::ePERMISSION_READ)) {
    std::fputs("veerback inspect: can't open ", stderr);
    PrintWide(stderr, path);
    std::fputs("\n", stderr);
    return eFAILED;
  }
  // Zero-filled, so a short file shows what it has.
  static unsigned char bytes[LcOmTrackBackRecord::eSIZE + 1];
  std::memset(bytes, 0, sizeof(bytes));
  size_t size = std::fread(bytes, 1, sizeof(bytes), file.GetStream());
  bool longer = size > LcOmTrackBackRecord::eSIZE;
  LcOmTrackBackRecord record;
  std::memcpy(static_cast<void*>(&record), bytes, sizeof(record));

  bool good = true;
  if (size != LcOmTrackBackRecord::eSIZE) {
    std::printf("size               %s 1728 bytes: the add-in %s\n", longer ? "more than" : "less than",
                longer ? "reads the first 1728 and ignores the rest" : "refuses it");
    good = longer;
  }
  good &= PrintText("documentPath", record.documentPath, LcOmTrackBackRecord::eDOCUMENT_PATH_UNITS);
  good &= PrintText("itemFilePath", record.itemFilePath, LcOmTrackBackRecord::eITEM_FILE_PATH_UNITS);
  const LcNvCamera& c = record.camera;
  std::printf("hasItem            %d\n", record.hasItem);
  std::printf("projection         %d (%s)\n", c.projection, c.projection == 0 ? "perspective" : "orthographic");
  std::printf("position           %.17g, %.17g, %.17g\n", c.position.x, c.position.y, c.position.z);
  std::printf("rotation           %.17g, %.17g, %.17g, %.17g\n", c.rotation.x, c.rotation.y, c.rotation.z, c.rotation.w);
  std::printf("aspect             %.17g\n", c.aspect);
  std::printf("height             %.17g\n", c.height);
  std::printf("nearDistance       %.17g\n", c.nearDistance);
  std::printf("farDistance        %.17g\n", c.farDistance);
  std::printf("verticalOffset     %.17g\n", c.verticalOffset);
  std::printf("horizontalOffset   %.17g\n", c.horizontalOffset);
  std::printf("scale              %.17g, %.17g, %.17g\n", record.scale[0], record.scale[1], record.scale[2]);
  std::printf("offset             %.17g, %.17g, %.17g\n", record.offset[0], record.offset[1], record.offset[2]);
  return good ? eOK : eFAILED;
}
