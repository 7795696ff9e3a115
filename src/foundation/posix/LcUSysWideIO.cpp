#include "foundation/LcUSysWideIO.h"

#include "foundation/LcUUtf8.h"

namespace {
// Bytes of the UTF-8 sequence a lead byte starts; 1 for anything else.
int SequenceLength(int lead) {
  if (lead >= 0xC0 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF7) return 4;
  return 1;
}
}  // namespace

bool LcUSysWideIO::ReadLine(FILE* stream, char16_t* buffer, int32_t limit) {
  if (!stream || !buffer || limit <= 0) return false;
  int32_t count = 0;
  bool readAny = false;
  while (count < limit - 1) {
    int lead = std::fgetc(stream);
    if (lead == EOF) break;
    readAny = true;
    char bytes[5] = {char(lead)};
    int n = SequenceLength(lead);
    int have = 1;
    for (; have < n; ++have) {
      int next = std::fgetc(stream);
      if (next == EOF) break;
      if ((next & 0xC0) != 0x80) {  // not part of this sequence: leave it for the next unit
        std::ungetc(next, stream);
        break;
      }
      bytes[have] = char(next);
    }
    char16_t units[4];
    bool valid = true;
    int64_t produced = LcUUtf8::DecodeToUTF16(bytes, have, units, valid);
    // A NUL byte ends the line, and so does a pair with room for one unit
    // only: the line is cut there, as only its start is read.
    if (produced == 0 || count + produced > limit - 1) break;
    for (int64_t i = 0; i < produced; ++i) buffer[count++] = units[i];
    if (lead == '\n') break;
  }
  buffer[count] = 0;
  return readAny;
}
