#include "VeerbackRecordPrint.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "foundation/LcUString.h"

namespace {
// A text field as UTF-8, and whether it ends within its units.
bool Field(const char16_t* field, int32_t units, std::string& text) {
  int32_t n = 0;
  while (n < units && field[n]) ++n;
  LcUStringA narrow;
  LcUString::UTF16ToUTF8(LcUString(field, n).Get(), narrow, true);
  text = narrow.Get();
  return n < units;
}

std::string JsonString(const std::string& text) {
  std::string quoted = "\"";
  for (unsigned char c : text) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += char(c);
    } else if (c < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof(escape), "\\u%04x", c);
      quoted += escape;
    } else {
      quoted += char(c);
    }
  }
  return quoted + "\"";
}

// JSON has no NaN or infinity: a record from outside may, so they go as text.
std::string JsonNumber(double value) {
  char text[32];
  if (std::isfinite(value))
    std::snprintf(text, sizeof(text), "%.17g", value);
  else
    std::snprintf(text, sizeof(text), "\"%s\"", std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf");
  return text;
}

void Numbers(const char* name, const double* values, int count) {
  std::printf("  \"%s\": ", name);
  if (count == 1) {
    std::printf("%s,\n", JsonNumber(values[0]).c_str());
    return;
  }
  for (int i = 0; i < count; ++i) std::printf("%s%s", i ? ", " : "[", JsonNumber(values[i]).c_str());
  std::printf("],\n");
}
}  // namespace

bool VeerbackRecordPrint::Text(const LcOmTrackBackRecord& record) {
  std::string document, item;
  bool ended = Field(record.documentPath, LcOmTrackBackRecord::eDOCUMENT_PATH_UNITS, document);
  std::printf("documentPath       \"%s\"%s\n", document.c_str(), ended ? "" : "  (no terminator)");
  bool itemEnded = Field(record.itemFilePath, LcOmTrackBackRecord::eITEM_FILE_PATH_UNITS, item);
  std::printf("itemFilePath       \"%s\"%s\n", item.c_str(), itemEnded ? "" : "  (no terminator)");
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
  return ended && itemEnded;
}

bool VeerbackRecordPrint::Json(const LcOmTrackBackRecord& record) {
  std::string document, item;
  bool ended = Field(record.documentPath, LcOmTrackBackRecord::eDOCUMENT_PATH_UNITS, document);
  bool itemEnded = Field(record.itemFilePath, LcOmTrackBackRecord::eITEM_FILE_PATH_UNITS, item);
  const LcNvCamera& c = record.camera;
  const double position[] = {c.position.x, c.position.y, c.position.z};
  const double rotation[] = {c.rotation.x, c.rotation.y, c.rotation.z, c.rotation.w};
  std::printf("{\n  \"documentPath\": %s,\n  \"documentPathTerminated\": %s,\n", JsonString(document).c_str(),
              ended ? "true" : "false");
  std::printf("  \"itemFilePath\": %s,\n  \"itemFilePathTerminated\": %s,\n", JsonString(item).c_str(),
              itemEnded ? "true" : "false");
  std::printf("  \"hasItem\": %d,\n  \"projection\": %d,\n", record.hasItem, c.projection);
  Numbers("position", position, 3);
  Numbers("rotation", rotation, 4);
  Numbers("aspect", &c.aspect, 1);
  Numbers("height", &c.height, 1);
  Numbers("nearDistance", &c.nearDistance, 1);
  Numbers("farDistance", &c.farDistance, 1);
  Numbers("verticalOffset", &c.verticalOffset, 1);
  Numbers("horizontalOffset", &c.horizontalOffset, 1);
  Numbers("scale", record.scale, 3);
  Numbers("offset", record.offset, 3);
  std::printf("  \"bytes\": %d\n}\n", int(LcOmTrackBackRecord::eSIZE));
  return ended && itemEnded;
}
