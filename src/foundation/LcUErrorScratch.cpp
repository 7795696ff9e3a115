#include "foundation/LcUErrorScratch.h"

#include <new>

namespace {
template <typename Unit>
const Unit* FormatInto(LcUStringBase<Unit>& target, const Unit* format, va_list args) {
  static const Unit empty[1] = {};
  if (format)
    target.FormatV(format, args);
  else
    target.Clear();
  return target.Get() ? target.Get() : empty;
}
}  // namespace

LcUErrorScratch& LcUErrorScratch::Get() {
  alignas(LcUErrorScratch) static unsigned char storage[sizeof(LcUErrorScratch)];
  static LcUErrorScratch* scratch = new (storage) LcUErrorScratch;
  return *scratch;
}

const char* LcUErrorScratch::Format(const char* format, va_list args) {
  return FormatInto(narrow, format, args);
}

const char16_t* LcUErrorScratch::Format(const char16_t* format, va_list args) {
  return FormatInto(wide, format, args);
}

const char* LcUErrorScratch::ToUTF8(const char16_t* text) {
  LcUString::UTF16ToUTF8(text ? text : u"", narrow, true);
  return narrow.Get() ? narrow.Get() : "";
}

void LcUErrorScratch::Free() {
  narrow.Free();
  wide.Free();
}
