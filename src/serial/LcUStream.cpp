#include "serial/LcUStream.h"

#include <cstdarg>
#include <cstdio>

#include "foundation/LcUError.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysError.h"
#include "serial/LcUStreamFilterSink.h"
#include "serial/LcUStreamSink.h"

LcUComponent LcUStream::component;

bool LcUStream::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUStream") != 1) return true;
  LcUString::Initialize();
  LcUStreamSink::Initialize();
  return true;
}

void LcUStream::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUStreamSink::Terminate();
  LcUString::Terminate();
}

const char* LcUStream::TypeName(int32_t code) {
  static const char* const names[eTYPE_COUNT] = {
      "Bad",         "Sync",       "Nat8",        "Int16",      "Nat16",       "Int32",       "Nat32",
      "Single",      "Double",     "Float",       "Boolean",    "Enum",        "Bitfield",    "String",
      "Nat8Array",   "Int16Array", "Nat16Array",  "Int32Array", "Nat32Array",  "SingleArray", "DoubleArray",
      "FloatArray",  "Object",     "ObjectEndDef", "Nat64",     "Nat64Array"};
  return code >= 0 && code < eTYPE_COUNT ? names[code] : names[0];
}

bool LcUStream::Fail(int32_t code, const char* format, ...) {
  if (error != 0) return false;
  error = code;
  char message[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(message, sizeof message, format, args);
  va_end(args);
  LcUError::PostF(LcUError::eDEBUG, &component, code, this, "%s", message);
  return false;
}

void LcUStream::FailMismatch(const char* read, const char* expected) {
  if (int32_t line = MessageLine())
    Fail(eMISMATCH, "Read \"%s\", expected \"%s\" at line %d", read, expected, line);
  else
    Fail(eMISMATCH, "Read \"%s\", expected \"%s\"", read, expected);
}

void LcUStream::LinkChain() {
  for (size_t i = 0; i < filters.size(); ++i)
    filters[i]->next = i + 1 < filters.size() ? static_cast<LcUStreamSink*>(filters[i + 1]) : sink;
  head = filters.empty() ? sink : filters.front();
}

void LcUStream::UnlinkChain() {
  for (LcUStreamFilterSink* filter : filters) filter->next = nullptr;
  head = nullptr;
}
