#pragma once
#include <cstdint>

#include "environment/LcURegistryLocationProvider.h"
#include "environment/LcURegistryNameList.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

// The settings store above the registry: short keys resolve against the
// current location provider, the hive follows the flags, missing values
// are inherited from earlier versions and may be written back, and every
// typed read leaves one line in the log. Narrow keys and names convert and
// take the wide road; a null name is the key's default value.
class LcURegistry {
public:
  enum : uint32_t {
    eREG_USER = 1,        // the current user's hive, else the machine's
    eREG_INHERIT = 2,     // search the older locations for a missing value
    eREG_WRITE_BACK = 8,  // write a missing value: the inherited one, else the default
    eREG_QUIET = 16       // a missing value is no error
  };
  // What ListNames gathers.
  enum : uint32_t { eLIST_SUB_KEYS = 1, eLIST_VALUES = 2, eLIST_FIRST_LOCATION = 4 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // Not owned; answers the earlier one.
  static LcURegistryLocationProvider* SetRegistryLocationProvider(LcURegistryLocationProvider* provider);
  static LcURegistryLocationProvider* GetRegistryLocationProvider();
  static const char16_t* GetRootKey();
  static int32_t GetLocationCount();
  static const char16_t* GetLocation(int32_t index);
  static int HiveOf(uint32_t flags) { return int(!(flags & eREG_USER)) | 2; }

  // size: the buffer's bytes in, the value's out.
  static bool RegRead(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t type, void* buffer,
                      uint32_t& size);
  static bool RegWrite(const char16_t* key, const char16_t* name, uint32_t flags, uint32_t type, const void* data,
                       uint32_t size);

  static int32_t RegGetI32(const char16_t* key, const char16_t* name, int32_t fallback, uint32_t flags);
  static int32_t RegGetI32(const char* key, const char* name, int32_t fallback, uint32_t flags);
  static int64_t RegGetI64(const char16_t* key, const char16_t* name, int64_t fallback, uint32_t flags);
  static int64_t RegGetI64(const char* key, const char* name, int64_t fallback, uint32_t flags);
  static uint64_t RegGetT(const char16_t* key, const char16_t* name, uint64_t fallback, uint32_t flags);
  static uint64_t RegGetT(const char* key, const char* name, uint64_t fallback, uint32_t flags);
  static double RegGetF(const char16_t* key, const char16_t* name, double fallback, uint32_t flags);
  static double RegGetF(const char* key, const char* name, double fallback, uint32_t flags);
  static bool RegGetBool(const char16_t* key, const char16_t* name, bool fallback, uint32_t flags);
  static bool RegGetBool(const char* key, const char* name, bool fallback, uint32_t flags);
  // The text results answer whether the registry had the value.
  static bool RegGetA(const char16_t* key, const char16_t* name, const char* fallback, LcUStringA& out,
                      uint32_t flags);
  static bool RegGetA(const char* key, const char* name, const char* fallback, LcUStringA& out, uint32_t flags);
  static bool RegGetW(const char16_t* key, const char16_t* name, const char16_t* fallback, LcUString& out,
                      uint32_t flags);
  static bool RegGetW(const char* key, const char* name, const char16_t* fallback, LcUString& out, uint32_t flags);

  static bool RegSetI32(const char16_t* key, const char16_t* name, int32_t value, uint32_t flags);
  static bool RegSetI32(const char* key, const char* name, int32_t value, uint32_t flags);
  static bool RegSetI64(const char16_t* key, const char16_t* name, int64_t value, uint32_t flags);
  static bool RegSetI64(const char* key, const char* name, int64_t value, uint32_t flags);
  static bool RegSetT(const char16_t* key, const char16_t* name, uint64_t value, uint32_t flags);
  static bool RegSetT(const char* key, const char* name, uint64_t value, uint32_t flags);
  static bool RegSetF(const char16_t* key, const char16_t* name, double value, uint32_t flags);
  static bool RegSetF(const char* key, const char* name, double value, uint32_t flags);
  static bool RegSetBool(const char16_t* key, const char16_t* name, bool value, uint32_t flags);
  static bool RegSetBool(const char* key, const char* name, bool value, uint32_t flags);
  // A null text writes nothing and answers false.
  static bool RegSetA(const char16_t* key, const char16_t* name, const char* value, uint32_t flags);
  static bool RegSetA(const char* key, const char* name, const char* value, uint32_t flags);
  static bool RegSetW(const char16_t* key, const char16_t* name, const char16_t* value, uint32_t flags);
  static bool RegSetW(const char* key, const char* name, const char16_t* value, uint32_t flags);

  static void MakeKeyPath(const char16_t* parent, const char16_t* child, LcUString& out);
  // In the current user's hive.
  static bool CreateUserKey(const char16_t* key);
  static bool DeleteAllUserKeys();
  static bool DeleteUserKey(const char16_t* path);

  // The names under key across the hives and locations; null when nothing
  // could be gathered. The caller frees the list.
  static LcURegistryNameList* ListNames(const char16_t* key, uint32_t flags, uint32_t what);
  static LcURegistryNameList* ListNames(const char* key, uint32_t flags, uint32_t what);
  static void FreeNameList(LcURegistryNameList* list);
};
