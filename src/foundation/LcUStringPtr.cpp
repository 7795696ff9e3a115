#include "foundation/LcUStringPtr.h"

#include <cstring>
#include <utility>

#include "foundation/LcUStringMemory.h"

namespace {
template <typename Unit>
int32_t Units(const Unit* text) {
  const Unit* p = text;
  while (*p) ++p;
  return int32_t(p - text);
}
}  // namespace

template <typename Unit>
LcUStringPtrBase<Unit>& LcUStringPtrBase<Unit>::operator=(LcUStringPtrBase&& other) noexcept {
  if (this != &other) {
    Free();
    std::swap(buffer, other.buffer);
  }
  return *this;
}

template <typename Unit>
int32_t LcUStringPtrBase<Unit>::Length() const {
  return buffer ? Units(buffer) : 0;
}

template <typename Unit>
void LcUStringPtrBase<Unit>::Assign(const Unit* text) {
  Assign(text, text ? Units(text) : 0);
}

template <typename Unit>
void LcUStringPtrBase<Unit>::Assign(const Unit* text, int32_t count) {
  if (text && text == buffer) return;
  if (!text) {
    Free();
    return;
  }
  if (count < 0) count = Units(text);
  Unit* fresh = static_cast<Unit*>(LcUStringMemory::Alloc((uint64_t(count) + 1) * sizeof(Unit), nullptr));
  if (fresh) {
    std::memcpy(fresh, text, size_t(count) * sizeof(Unit));
    fresh[count] = 0;
  }
  Free();
  buffer = fresh;
}

template <typename Unit>
void LcUStringPtrBase<Unit>::ClearPtr() {
  static const Unit kEmpty[1] = {0};
  Assign(kEmpty, 0);
}

template <typename Unit>
void LcUStringPtrBase<Unit>::Free() {
  // No stored size: it is recomputed from the text.
  if (buffer) LcUStringMemory::Free(buffer, (uint64_t(Units(buffer)) + 1) * sizeof(Unit));
  buffer = nullptr;
}

template class LcUStringPtrBase<char>;
template class LcUStringPtrBase<char16_t>;
