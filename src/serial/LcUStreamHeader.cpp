#include "serial/LcUStreamHeader.h"

#include "serial/LcUStream.h"
#include "serial/LcUStreamFilterSink.h"

void LcUStreamHeader::Compose(const LcUStream& stream, LcUStringA& text) {
  text.Assign(kMark);
  text.Append(stream.ascii ? "ascii " : "binary ");
  text.Append(stream.doublePrecision ? "double " : "single ");
  text.Append(stream.debug ? "debug " : "release ");
  text.Append(stream.textEncoding == LcUStream::eC ? "C " : "utf8 ");
  text.Append(stream.formatName.IsEmpty() ? kNoFormat : stream.formatName.Get());
  for (const LcUStreamFilterSink* filter : stream.filters) {
    text.Append(" ");
    text.Append(filter->GetName());
  }
  text.Append("\n");
}
