#include "environment/LcUSysRegistry.h"

#include <windows.h>
#include <shlwapi.h>

namespace {
constexpr REGSAM kWriteAccess = 131078;  // KEY_WRITE
constexpr REGSAM kQueryAccess = KEY_QUERY_VALUE;

const wchar_t* W(const char16_t* text) {
  return reinterpret_cast<const wchar_t*>(text);
}

HKEY HiveKey(int hive) {
  switch (hive) {
    case LcUSysRegistry::eHIVE_CLASSES_ROOT: return HKEY_CLASSES_ROOT;
    case LcUSysRegistry::eHIVE_CURRENT_CONFIG: return HKEY_CURRENT_CONFIG;
    case LcUSysRegistry::eHIVE_CURRENT_USER: return HKEY_CURRENT_USER;
    case LcUSysRegistry::eHIVE_LOCAL_MACHINE: return HKEY_LOCAL_MACHINE;
    case LcUSysRegistry::eHIVE_USERS: return HKEY_USERS;
    default: return nullptr;
  }
}

// One open key, closed on every way out.
class OpenKey {
public:
  OpenKey(int hive, const char16_t* key, REGSAM access) {
    HKEY root = HiveKey(hive);
    if (root && RegOpenKeyExW(root, W(key), 0, access, &handle) != ERROR_SUCCESS) handle = nullptr;
  }
  ~OpenKey() {
    if (handle) RegCloseKey(handle);
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  explicit operator bool() const { return handle != nullptr; }
  HKEY handle = nullptr;
};

// Enumerates one entry, growing the name buffer on ERROR_MORE_DATA up to
// its limit; beyond it the entry counts as a failure.
template <typename Enumerate>
bool EnumerateName(LcUString* name, Enumerate enumerate) {
  LcUString buffer;
  for (uint32_t units = LcUSysRegistry::eFIRST_NAME_UNITS; units <= LcUSysRegistry::eMAX_NAME_UNITS; units *= 2) {
    if (buffer.Reserve(int32_t(units)) <= int32_t(units)) return false;
    DWORD length = units;
    LONG error = enumerate(reinterpret_cast<wchar_t*>(buffer.GetBuffer()), &length);
    if (error == ERROR_MORE_DATA) continue;
    if (error != ERROR_SUCCESS) return false;
    buffer.SetLength(int32_t(length));
    if (name) name->Swap(buffer);
    return true;
  }
  return false;
}

int64_t FileTimeValue(const FILETIME& time) {
  return int64_t((uint64_t(time.dwHighDateTime) << 32) | time.dwLowDateTime);
}
}  // namespace

// Every call opens and closes its own key.
void LcUSysRegistry::CloseAll() {}

bool LcUSysRegistry::CreateKey(int hive, const char16_t* key) {
  HKEY root = HiveKey(hive);
  HKEY handle = nullptr;
  if (!root || RegCreateKeyExW(root, W(key), 0, nullptr, 0, kWriteAccess, nullptr, &handle, nullptr) != ERROR_SUCCESS)
    return false;
  RegCloseKey(handle);
  return true;
}

bool LcUSysRegistry::KeyExists(int hive, const char16_t* key) {
  return bool(OpenKey(hive, key, kQueryAccess));
}

bool LcUSysRegistry::DeleteKey(int hive, const char16_t* key, bool recursive) {
  HKEY root = HiveKey(hive);
  if (!root) return false;
  LONG error = recursive ? LONG(SHDeleteKeyW(root, W(key))) : RegDeleteKeyW(root, W(key));
  return error == ERROR_SUCCESS;
}

bool LcUSysRegistry::DeleteValue(int hive, const char16_t* key, const char16_t* name) {
  OpenKey open(hive, key, KEY_SET_VALUE);
  return open && RegDeleteValueW(open.handle, W(name)) == ERROR_SUCCESS;
}

bool LcUSysRegistry::GetKeyInfo(int hive, const char16_t* key, uint32_t* subKeyCount, uint32_t* maxSubKeyLength,
                                uint32_t* valueCount, uint32_t* maxValueNameLength, uint32_t* maxValueLength,
                                int64_t* lastWriteTime) {
  OpenKey open(hive, key, KEY_READ);
  if (!open) return false;
  DWORD subKeys = 0, maxSubKey = 0, values = 0, maxValueName = 0, maxValue = 0;
  FILETIME written = {};
  if (RegQueryInfoKeyW(open.handle, nullptr, nullptr, nullptr, &subKeys, &maxSubKey, nullptr, &values, &maxValueName,
                       &maxValue, nullptr, &written) != ERROR_SUCCESS)
    return false;
  if (subKeyCount) *subKeyCount = subKeys;
  if (maxSubKeyLength) *maxSubKeyLength = maxSubKey;
  if (valueCount) *valueCount = values;
  if (maxValueNameLength) *maxValueNameLength = maxValueName;
  if (maxValueLength) *maxValueLength = maxValue;
  if (lastWriteTime) *lastWriteTime = FileTimeValue(written);
  return true;
}

bool LcUSysRegistry::GetSubKey(int hive, const char16_t* key, uint32_t index, LcUString* name, LcUString* className,
                               int64_t* lastWriteTime) {
  OpenKey open(hive, key, KEY_READ);
  if (!open) return false;
  wchar_t classBuffer[eCLASS_UNITS];
  FILETIME written = {};
  bool found = EnumerateName(name, [&](wchar_t* buffer, DWORD* length) {
    DWORD classLength = eCLASS_UNITS;
    return RegEnumKeyExW(open.handle, index, buffer, length, nullptr, classBuffer, &classLength, &written);
  });
  if (!found) return false;
  if (className) className->Assign(reinterpret_cast<const char16_t*>(classBuffer));
  if (lastWriteTime) *lastWriteTime = FileTimeValue(written);
  return true;
}

bool LcUSysRegistry::GetValueName(int hive, const char16_t* key, uint32_t index, LcUString* name, uint32_t* type) {
  OpenKey open(hive, key, KEY_READ);
  if (!open) return false;
  DWORD valueType = 0;
  bool found = EnumerateName(name, [&](wchar_t* buffer, DWORD* length) {
    return RegEnumValueW(open.handle, index, buffer, length, nullptr, &valueType, nullptr, nullptr);
  });
  if (found && type) *type = valueType;
  return found;
}

bool LcUSysRegistry::QueryValue(int hive, const char16_t* key, const char16_t* name, uint32_t accessExtra,
                                uint32_t* type, void* buffer, uint32_t* size) {
  OpenKey open(hive, key, kQueryAccess | accessExtra);
  if (!open) return false;
  DWORD valueType = 0;
  DWORD bytes = size ? *size : 0;
  LONG error = RegQueryValueExW(open.handle, W(name), nullptr, &valueType, static_cast<BYTE*>(buffer),
                                size ? &bytes : nullptr);
  if (type) *type = valueType;
  if (size) *size = bytes;
  return error == ERROR_SUCCESS;
}

bool LcUSysRegistry::SetValue(int hive, const char16_t* key, const char16_t* name, uint32_t type, const void* data,
                              uint32_t size) {
  HKEY root = HiveKey(hive);
  HKEY handle = nullptr;
  if (!root || RegCreateKeyExW(root, W(key), 0, nullptr, 0, kWriteAccess, nullptr, &handle, nullptr) != ERROR_SUCCESS)
    return false;
  LONG error = RegSetValueExW(handle, W(name), 0, type, static_cast<const BYTE*>(data), size);
  RegCloseKey(handle);
  return error == ERROR_SUCCESS;
}
