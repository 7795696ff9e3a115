#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// The thin layer over the registry: one call per operation, each opening
// and closing its key. Failures answer false and report nothing. Windows
// has its registry; Linux has the store of one database per hive.
class LcUSysRegistry {
public:
  enum {
    eHIVE_CLASSES_ROOT = 0,
    eHIVE_CURRENT_CONFIG = 1,
    eHIVE_CURRENT_USER = 2,
    eHIVE_LOCAL_MACHINE = 3,
    eHIVE_USERS = 4,
    eHIVE_COUNT = 5
  };
  // The Win32 value types.
  enum : uint32_t { eTYPE_TEXT = 1, eTYPE_INT32 = 4, eTYPE_INT64 = 11 };
  // Enumerated names must fit a buffer of this many units, terminator included.
  enum : uint32_t { eFIRST_NAME_UNITS = 128, eMAX_NAME_UNITS = 4096, eCLASS_UNITS = 256 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  static bool CreateKey(int hive, const char16_t* key);
  static bool KeyExists(int hive, const char16_t* key);
  // Without recursive, a key that still has sub-keys stays.
  static bool DeleteKey(int hive, const char16_t* key, bool recursive);
  static bool DeleteValue(int hive, const char16_t* key, const char16_t* name);
  // Any output may be null. Lengths are in units without the terminator;
  // lastWriteTime is in 100 ns steps since 1601.
  static bool GetKeyInfo(int hive, const char16_t* key, uint32_t* subKeyCount, uint32_t* maxSubKeyLength,
                         uint32_t* valueCount, uint32_t* maxValueNameLength, uint32_t* maxValueLength,
                         int64_t* lastWriteTime);
  static uint32_t CountSubKeys(int hive, const char16_t* key);
  static uint32_t CountValues(int hive, const char16_t* key);
  // Sub-keys come in name order without regard to case; values in the
  // order they were first written.
  static bool GetSubKey(int hive, const char16_t* key, uint32_t index, LcUString* name, LcUString* className,
                        int64_t* lastWriteTime);
  static bool GetValueName(int hive, const char16_t* key, uint32_t index, LcUString* name, uint32_t* type);

  // A null name is the key's default value. size is the buffer's bytes in
  // and the value's bytes out; a short buffer answers false with size set,
  // and a null buffer asks for the size alone.
  static bool GetValue(int hive, const char16_t* key, const char16_t* name, uint32_t* type, void* buffer,
                       uint32_t* size);
  static bool GetValueType(int hive, const char16_t* key, const char16_t* name, uint32_t* type);
  static bool HasValue(int hive, const char16_t* key, const char16_t* name);
  // The typed reads take the exact type only.
  static bool GetBoolValue(int hive, const char16_t* key, const char16_t* name, bool& out);
  static bool GetInt32Value(int hive, const char16_t* key, const char16_t* name, int32_t& out);
  static bool GetInt64Value(int hive, const char16_t* key, const char16_t* name, int64_t& out);
  // accessExtra joins the access mask of the open (Windows' view flags).
  static bool GetTextValue(int hive, const char16_t* key, const char16_t* name, LcUString& out,
                           uint32_t accessExtra = 0);

  // Each creates the key as needed.
  static bool SetValue(int hive, const char16_t* key, const char16_t* name, uint32_t type, const void* data,
                       uint32_t size);
  static bool SetInt32Value(int hive, const char16_t* key, const char16_t* name, int32_t value);
  static bool SetInt64Value(int hive, const char16_t* key, const char16_t* name, int64_t value);
  static bool SetTextValue(int hive, const char16_t* key, const char16_t* name, const char16_t* value);

  // "" for a number that is no hive.
  static const char* HiveName(int hive);
  // a, then each non-null of b, c and d after a backslash.
  static void JoinKey(const char16_t* a, const char16_t* b, const char16_t* c, const char16_t* d, LcUString& out);

private:
  // The last Terminate lets go of what the platform holds open; a module
  // that is unloaded leaves nothing behind.
  static void CloseAll();
  static bool QueryValue(int hive, const char16_t* key, const char16_t* name, uint32_t accessExtra, uint32_t* type,
                         void* buffer, uint32_t* size);
};
