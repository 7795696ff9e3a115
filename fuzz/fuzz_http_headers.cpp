#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "filestream/LcUHttpHeaders.h"

// Raw headers as a server may send them (bytes widened one by one, as the
// clients hand them over): every reader ends cleanly, and what a reader
// finds holds up to a second look.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LcUString raw;
  for (size_t i = 0; i < size; ++i)
    if (data[i]) raw.Append(char16_t(data[i]));
  LcUString value;
  uint64_t number = 0;
  int64_t seconds = 0;
  LcUHttpHeaders::GetContentLength(raw.Get(), number);
  LcUHttpHeaders::GetContentRangeTotal(raw.Get(), number);
  if (LcUHttpHeaders::Find(raw.Get(), u"Content-Range", value)) {
    LcUHttpHeaders::GetFirstRangeTotal(value.Get(), number);
    // A found value is trimmed: no blank at either end.
    if (value.Length() && (value[0] == u' ' || value[value.Length() - 1] == u' ')) std::abort();
  }
  LcUHttpHeaders::ParseDate(raw.Get(), seconds);
  LcUString target;
  LcUHttpHeaders::RequestTarget(raw.Get(), target);
  // A target carries nothing a request line can't.
  for (int32_t i = 0; i < target.Length(); ++i)
    if (target[i] <= 0x20 || target[i] >= 0x7F) std::abort();
  return 0;
}
