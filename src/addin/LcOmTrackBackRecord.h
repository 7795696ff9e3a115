#pragma once
#include <cstddef>
#include <cstdint>

#include "geometry/LcNvCamera.h"

// The TrackBack record file: exactly 1728 little-endian bytes, no header.
// The viewer writes it whole; the add-in reads it whole.
class LcOmTrackBackRecord {
public:
  enum { eDOCUMENT_PATH_UNITS = 261, eITEM_FILE_PATH_UNITS = 512, eSIZE = 1728 };

  // Fills camera, scale and offset with their defaults; the two texts and
  // hasItem are left as they are, for the file to fill.
  LcOmTrackBackRecord();

  // 1 when copied; 0, record unchanged, when the text and its terminator
  // don't fit. A null text copies one terminator.
  int setDocumentPath(const char16_t* path);
  int setItemFilePath(const char16_t* path);
  // The texts' lengths, bounded by their fields. A record from a file need
  // not terminate them, and a text then ends at its field rather than running
  // on into the next one: the host must never read beyond the record.
  int32_t DocumentPathLength() const { return FieldLength(documentPath, eDOCUMENT_PATH_UNITS); }
  int32_t ItemFilePathLength() const { return FieldLength(itemFilePath, eITEM_FILE_PATH_UNITS); }

  char16_t documentPath[eDOCUMENT_PATH_UNITS];
  char16_t itemFilePath[eITEM_FILE_PATH_UNITS];
  uint8_t padding0[6];
  LcNvCamera camera;
  double scale[3];
  double offset[3];
  int32_t hasItem;
  uint8_t padding1[12];

private:
  static int32_t FieldLength(const char16_t* field, int32_t units) {
    int32_t n = 0;
    while (n < units && field[n]) ++n;
    return n;
  }
};

static_assert(sizeof(LcOmTrackBackRecord) == LcOmTrackBackRecord::eSIZE, "record size");
static_assert(offsetof(LcOmTrackBackRecord, documentPath) == 0, "record layout");
static_assert(offsetof(LcOmTrackBackRecord, itemFilePath) == 522, "record layout");
static_assert(offsetof(LcOmTrackBackRecord, camera) == 1552, "record layout");
static_assert(offsetof(LcOmTrackBackRecord, scale) == 1664, "record layout");
static_assert(offsetof(LcOmTrackBackRecord, offset) == 1688, "record layout");
static_assert(offsetof(LcOmTrackBackRecord, hasItem) == 1712, "record layout");
