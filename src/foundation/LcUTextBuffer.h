#pragma once
#include <cstdint>
#include <cstring>

#include "foundation/LcUString.h"

// Wide text for the length of one call: on the stack while it fits, on the
// heap beyond. Hot paths build keys and names in it without touching the
// allocator.
template <int32_t Units = 260>
class LcUTextBuffer {
public:
  LcUTextBuffer() { local[0] = 0; }
  LcUTextBuffer(const LcUTextBuffer&) = delete;
  LcUTextBuffer& operator=(const LcUTextBuffer&) = delete;

  const char16_t* Get() const { return text; }
  char16_t* GetBuffer() { return text; }
  int32_t Length() const { return length; }

  // False, with the text unchanged, when the heap can't be had.
  bool Append(const char16_t* more, int32_t count) {
    if (!more || count <= 0) return true;
    if (text == local && length + count < Units) {
      std::memcpy(local + length, more, size_t(count) * sizeof(char16_t));
      length += count;
      local[length] = 0;
      return true;
    }
    if (text == local) heap.Assign(local, length);
    heap.Append(more, count);
    if (heap.Length() != length + count) return false;
    text = heap.GetBuffer();
    length += count;
    return true;
  }
  bool Append(const char16_t* more) { return Append(more, more ? LcUString::Len(more) : 0); }

private:
  char16_t local[Units];
  LcUString heap;
  char16_t* text = local;
  int32_t length = 0;
};
