#pragma once
#include "foundation/LcUString.h"
#include "foundation/LcUStringA.h"

class LcUFileMetaData;

// The text in "data.twcacheinfo" by which a later run knows one version of
// one file: the URL under "MetaData", what the location said under
// "FileInfo".
class LcUCacheDescription {
public:
  // Compact JSON; false when the stream failed.
  static bool Compose(const char16_t* url, const LcUFileMetaData& info, LcUStringA& out);
  // True only for a sound description: a non-empty "URI", a "TWVersion"
  // from "13" to "0", and a "FileInfo" without a type error.
  static bool Parse(const char* text, LcUString& uri, LcUFileMetaData& info);
  // Parse over the file; false when it cannot be read.
  static bool Read(const char16_t* path, LcUString& uri, LcUFileMetaData& info);
  static bool Write(const char16_t* path, const LcUStringA& text);
};
