#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUString.h"

// A set of wide strings kept in order, on the sized allocator. Names of
// files compare as they stand; registry names without regard to case.
class LcUStringSet {
public:
  explicit LcUStringSet(bool ignoreCase = false) : ignoreCase(ignoreCase) {}
  // False for empty text, text held already, or text that couldn't be stored.
  bool Insert(const char16_t* text);
  int32_t Count() const { return int32_t(items.size()); }
  const LcUString& operator[](int32_t index) const { return items[size_t(index)]; }
  void Clear() { items.clear(); }

private:
  int Compare(const char16_t* a, const char16_t* b) const;
  bool ignoreCase;
  std::vector<LcUString, LcUAllocator<LcUString>> items;
};
