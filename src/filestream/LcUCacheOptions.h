#pragma once
#include <cstdint>

// The options of the local cache, under "general.localcache".
class LcUCacheOptions {
public:
  // The five options, their group and the validator the two limits share.
  static void Define();
  static void Undefine();
  static bool IsEnabled();
  static bool IsTemporaryEnabled();
  // In MiB.
  static int32_t GetMaxSize();
  static int32_t GetMinInactiveFiles();
  static bool IsEmptyOnNextStart();
  static void ClearEmptyOnNextStart();
};
