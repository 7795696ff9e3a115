#include "filestream/LcUCacheOptions.h"

#include <initializer_list>

#include "options/LcUOptInt32MinValidator.h"
#include "options/LcUOption.h"

namespace {
const char kGroup[] = "general.localcache";
const char kEnabled[] = "general.localcache.enabled";
const char kTemporaryEnabled[] = "general.localcache.temporary_enabled";
const char kMaxSize[] = "general.localcache.max_size";
const char kMinInactiveFiles[] = "general.localcache.min_inactive_files";
const char kEmptyOnNextStart[] = "general.localcache.empty_on_next_start";

// Silent: a missing option reads as its default.
bool Boolean(const char* path, bool fallback) {
  bool value = fallback;
  return LcUOption::TryGetBoolean(path, value) ? value : fallback;
}

int32_t Int32(const char* path, int32_t fallback) {
  int32_t value = fallback;
  return LcUOption::TryGetInt32(path, value) ? value : fallback;
}
}  // namespace

void LcUCacheOptions::Define() {
  LcUOptInt32MinValidator* atLeastOne = new LcUOptInt32MinValidator(1);
  atLeastOne->AddRef();
  LcUOption::DefineBoolean(kEnabled, true);
  LcUOption::DefineBoolean(kTemporaryEnabled, true);
  LcUOption::DefineInt32(kMaxSize, 1024, 0, 0, nullptr, atLeastOne);
  LcUOption::DefineInt32(kMinInactiveFiles, 3, 0, 0, nullptr, atLeastOne);
  LcUOption::DefineBoolean(kEmptyOnNextStart, false);
  LcUOption::SetSetClass(kGroup, "option_GENERAL_LOCALCACHE");
  atLeastOne->Release();
}

void LcUCacheOptions::Undefine() {
  for (const char* path : {kEnabled, kTemporaryEnabled, kMaxSize, kMinInactiveFiles, kEmptyOnNextStart, kGroup})
    LcUOption::Undefine(path);
}

bool LcUCacheOptions::IsEnabled() {
  return Boolean(kEnabled, true);
}

bool LcUCacheOptions::IsTemporaryEnabled() {
  return Boolean(kTemporaryEnabled, true);
}

int32_t LcUCacheOptions::GetMaxSize() {
  return Int32(kMaxSize, 1024);
}

int32_t LcUCacheOptions::GetMinInactiveFiles() {
  return Int32(kMinInactiveFiles, 3);
}

bool LcUCacheOptions::IsEmptyOnNextStart() {
  return Boolean(kEmptyOnNextStart, false);
}

void LcUCacheOptions::ClearEmptyOnNextStart() {
  LcUOption::SetBoolean(kEmptyOnNextStart, false);
}
