#pragma once
#include <cstdint>

#include "foundation/LcUString.h"
#include "foundation/LcUStringA.h"

// How LcUDict hashes, compares and stores each of its key kinds. Hashes
// need only be stable within a process.
template <typename Key>
struct LcUDictKey;

template <>
struct LcUDictKey<uint64_t> {
  using Arg = uint64_t;
  static uint32_t Hash(uint64_t key) {
    key ^= key >> 33;
    key *= 0xFF51AFD7ED558CCDull;
    key ^= key >> 33;
    return uint32_t(key);
  }
  static bool Equal(uint64_t stored, uint64_t key) { return stored == key; }
  static bool Store(uint64_t& stored, uint64_t key) {
    stored = key;
    return true;
  }
};

// Text keys: a null text is the empty text.
template <typename String, typename Unit>
struct LcUDictTextKey {
  using Arg = const Unit*;
  static uint32_t Hash(const Unit* key) {
    uint32_t h = 2166136261u;
    for (const Unit* at = key; at && *at; ++at) h = (h ^ uint32_t(*at)) * 16777619u;
    return h;
  }
  static bool Equal(const String& stored, const Unit* key) {
    const Unit* a = stored.IsNull() ? nullptr : stored.Get();
    const Unit* b = key;
    if (!a || !b) return (!a || !*a) && (!b || !*b);
    while (*a && *a == *b) ++a, ++b;
    return *a == *b;
  }
  // False when the copy could not be allocated.
  static bool Store(String& stored, const Unit* key) {
    stored.Assign(key ? key : EmptyText());
    return !stored.IsNull();
  }
  static const Unit* EmptyText() {
    static const Unit kEmpty[1] = {0};
    return kEmpty;
  }
};

template <>
struct LcUDictKey<LcUStringA> : LcUDictTextKey<LcUStringA, char> {};
template <>
struct LcUDictKey<LcUString> : LcUDictTextKey<LcUString, char16_t> {};
