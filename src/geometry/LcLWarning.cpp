#include "geometry/LcLWarning.h"

#include <cstdarg>

#include "foundation/LcUError.h"
#include "foundation/LcUStringA.h"

void LcLWarning::Post(LcUComponent* component, int32_t id, const void* data, const char* format, ...) {
  LcUStringA text;
  va_list args;
  va_start(args, format);
  text.FormatV(format, args);
  va_end(args);
  LcUError::PostF(LcUError::eWARNING, component, id, const_cast<void*>(data), "%s", text.IsNull() ? "" : text.Get());
}
