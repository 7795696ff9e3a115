#include "addin/LcOmTrackBackRecord.h"

#include <cstring>

namespace {
int CopyBounded(char16_t* target, int32_t capacity, const char16_t* text) {
  int32_t units = 0;
  if (text)
    while (text[units]) ++units;
  if (units + 1 > capacity) return 0;
  if (units) std::memcpy(target, text, size_t(units) * sizeof(char16_t));
  target[units] = 0;
  return 1;
}
}  // namespace

LcOmTrackBackRecord::LcOmTrackBackRecord() : camera(), scale{1.0, 1.0, 1.0}, offset{0.0, 0.0, 0.0} {}

int LcOmTrackBackRecord::setDocumentPath(const char16_t* path) {
  return CopyBounded(documentPath, eDOCUMENT_PATH_UNITS, path);
}

int LcOmTrackBackRecord::setItemFilePath(const char16_t* path) {
  return CopyBounded(itemFilePath, eITEM_FILE_PATH_UNITS, path);
}
