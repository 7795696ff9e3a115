#pragma once
#include "foundation/LcUStringA.h"

class LcUStream;

// The header line: the mark, the four choices, the format's name and the
// filters' names.
namespace LcUStreamHeader {
constexpr const char kMark[] = "#LcUStream-V1.1 ";
constexpr const char kNoFormat[] = "linull";

void Compose(const LcUStream& stream, LcUStringA& text);
}  // namespace LcUStreamHeader
