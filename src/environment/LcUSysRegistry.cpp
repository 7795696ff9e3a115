#include "environment/LcUSysRegistry.h"

#include <initializer_list>

#include "foundation/LcUSysError.h"

LcUComponent LcUSysRegistry::component;

bool LcUSysRegistry::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSysRegistry") != 1) return true;
  LcUString::Initialize();
  return true;
}

void LcUSysRegistry::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  CloseAll();
  LcUString::Terminate();
}

const char* LcUSysRegistry::HiveName(int hive) {
  static const char* const kNames[eHIVE_COUNT] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_CONFIG", "HKEY_CURRENT_USER",
                                                  "HKEY_LOCAL_MACHINE", "HKEY_USERS"};
  return hive >= 0 && hive < eHIVE_COUNT ? kNames[hive] : "";
}

void LcUSysRegistry::JoinKey(const char16_t* a, const char16_t* b, const char16_t* c, const char16_t* d,
                             LcUString& out) {
  LcUString joined(a);
  for (const char16_t* part : {b, c, d}) {
    if (!part) continue;
    joined.Append(u'\\');
    joined.Append(part);
  }
  out.Swap(joined);
}

uint32_t LcUSysRegistry::CountSubKeys(int hive, const char16_t* key) {
  uint32_t count = 0;
  while (GetSubKey(hive, key, count, nullptr, nullptr, nullptr)) ++count;
  return count;
}

uint32_t LcUSysRegistry::CountValues(int hive, const char16_t* key) {
  uint32_t count = 0;
  while (GetValueName(hive, key, count, nullptr, nullptr)) ++count;
  return count;
}

bool LcUSysRegistry::GetValue(int hive, const char16_t* key, const char16_t* name, uint32_t* type, void* buffer,
                              uint32_t* size) {
  return QueryValue(hive, key, name, 0, type, buffer, size);
}

bool LcUSysRegistry::GetValueType(int hive, const char16_t* key, const char16_t* name, uint32_t* type) {
  return QueryValue(hive, key, name, 0, type, nullptr, nullptr);
}

bool LcUSysRegistry::HasValue(int hive, const char16_t* key, const char16_t* name) {
  return QueryValue(hive, key, name, 0, nullptr, nullptr, nullptr);
}

namespace {
template <typename T>
bool GetExact(int hive, const char16_t* key, const char16_t* name, uint32_t wanted, T& out) {
  uint32_t type = 0;
  uint32_t size = sizeof(T);
  T value;
  if (!LcUSysRegistry::GetValue(hive, key, name, &type, &value, &size) || type != wanted || size != sizeof(T))
    return false;
  out = value;
  return true;
}
}  // namespace

bool LcUSysRegistry::GetBoolValue(int hive, const char16_t* key, const char16_t* name, bool& out) {
  int32_t value;
  if (!GetExact(hive, key, name, eTYPE_INT32, value)) return false;
  out = value == 1;
  return true;
}

bool LcUSysRegistry::GetInt32Value(int hive, const char16_t* key, const char16_t* name, int32_t& out) {
  return GetExact(hive, key, name, eTYPE_INT32, out);
}

bool LcUSysRegistry::GetInt64Value(int hive, const char16_t* key, const char16_t* name, int64_t& out) {
  return GetExact(hive, key, name, eTYPE_INT64, out);
}

bool LcUSysRegistry::GetTextValue(int hive, const char16_t* key, const char16_t* name, LcUString& out,
                                  uint32_t accessExtra) {
  uint32_t type = 0;
  uint32_t size = 0;
  if (!QueryValue(hive, key, name, accessExtra, &type, nullptr, &size) || type != eTYPE_TEXT) return false;
  if (size < sizeof(char16_t)) {
    out.Free();
    return true;
  }
  // Sized from the first query; a value that grew in between fails the read.
  int32_t units = int32_t(size / sizeof(char16_t)) - 1;
  LcUString text;
  if (text.Reserve(units) <= units) return false;
  uint32_t bytes = uint32_t(units + 1) * sizeof(char16_t);
  if (!QueryValue(hive, key, name, accessExtra, &type, text.GetBuffer(), &bytes) || type != eTYPE_TEXT) return false;
  // Stored text need not end in a terminator, nor be as long as it says.
  int32_t length = 0;
  int32_t stored = int32_t(bytes / sizeof(char16_t));
  while (length < stored && length < units + 1 && text.GetBuffer()[length]) ++length;
  text.SetLength(length);
  out.Swap(text);
  return true;
}

bool LcUSysRegistry::SetInt32Value(int hive, const char16_t* key, const char16_t* name, int32_t value) {
  return SetValue(hive, key, name, eTYPE_INT32, &value, sizeof value);
}

bool LcUSysRegistry::SetInt64Value(int hive, const char16_t* key, const char16_t* name, int64_t value) {
  return SetValue(hive, key, name, eTYPE_INT64, &value, sizeof value);
}

bool LcUSysRegistry::SetTextValue(int hive, const char16_t* key, const char16_t* name, const char16_t* value) {
  if (!value) return false;
  uint32_t size = uint32_t(LcUString::Len(value)) * 2 + 2;
  return SetValue(hive, key, name, eTYPE_TEXT, value, size);
}
