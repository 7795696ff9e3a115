#pragma once
#include <cstdint>

class LcUStreamReader;
class LcUStreamWriter;

// Value by value from one debug stream to another, in any encoding, with
// object ids renumbered to the target.
class LcUStreamCopy {
public:
  // Does nothing unless both streams are debug streams; ends the reader.
  static void Copy(LcUStreamReader& reader, LcUStreamWriter& writer);
  // Up to a Sync, or with `stopAtClose` up to the ObjectEndDef that closes
  // the object being read.
  static void CopyTokens(LcUStreamReader& reader, LcUStreamWriter& writer, bool stopAtClose);

private:
  static int32_t ReadToken(LcUStreamReader& reader);
  static void CopyValue(LcUStreamReader& reader, LcUStreamWriter& writer, int32_t code);
  static void CopyArray(LcUStreamReader& reader, LcUStreamWriter& writer, int32_t code);
};
