#include "foundation/LcUStringA.h"

#include <cstring>

namespace {
bool IsAsciiSpace(char c) {
  return c == 32 || (c >= 9 && c <= 13);
}
}  // namespace

void LcUStringA::Trim(bool asciiWhiteSpace) {
  if (!asciiWhiteSpace) {
    Trim();
    return;
  }
  while (length > 0 && IsAsciiSpace(buffer[length - 1])) buffer[--length] = 0;
  int32_t lead = 0;
  while (lead < length && IsAsciiSpace(buffer[lead])) ++lead;
  if (lead == 0) return;
  std::memmove(buffer, buffer + lead, size_t(length - lead + 1));
  length -= lead;
}
