#pragma once
#include "addin/LcOmTrackBackRecord.h"

// A record on standard output, field by field or as one JSON object. Each
// answers whether both texts end within their fields.
class VeerbackRecordPrint {
public:
  static bool Text(const LcOmTrackBackRecord& record);
  static bool Json(const LcOmTrackBackRecord& record);
};
