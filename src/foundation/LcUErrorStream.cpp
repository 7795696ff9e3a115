#include "foundation/LcUErrorStream.h"

#include <cstdarg>

#include "foundation/LcUSysError.h"

LcUErrorStream& LcUErrorStream::operator<<(const char* text) {
  LcUString::UTF8ToUTF16(text, -1, scratch);
  message.Append(scratch);
  return *this;
}

LcUErrorStream& LcUErrorStream::operator<<(const LcUStringA& text) {
  LcUString::UTF8ToUTF16(text.Get(), text.Length(), scratch);
  message.Append(scratch);
  return *this;
}

LcUErrorStream& LcUErrorStream::operator<<(const char16_t* text) {
  if (text) message.Append(text);
  return *this;
}

LcUErrorStream& LcUErrorStream::operator<<(const LcUString& text) {
  message.Append(text);
  return *this;
}

LcUErrorStream& LcUErrorStream::operator<<(double value) {
  return Number(u"%g", value);
}

LcUErrorStream& LcUErrorStream::operator<<(const void* pointer) {
  return Number(u"%p", pointer);
}

LcUErrorStream& LcUErrorStream::operator<<(bool value) {
  message.Append(value ? u"TRUE" : u"FALSE");
  return *this;
}

LcUErrorStream& LcUErrorStream::Number(const char16_t* format, ...) {
  va_list args;
  va_start(args, format);
  scratch.FormatV(format, args);
  va_end(args);
  message.Append(scratch);
  return *this;
}

int LcUErrorStream::Post() {
  return LcUSysError::Post(severity, component, id, data, message.Get() ? message.Get() : u"");
}
