#pragma once
#include <cstdint>

// The heap part of the memory statistics and checks: the platform lists its
// heaps, the report prints and validates them the same way everywhere.
class LcUSysHeapReport {
public:
  static constexpr int32_t eMAX_LOGGED = 100;
  static constexpr int32_t eMAX_CHECKED = 80;

  enum Kind { ePROCESS, eRUNTIME, eOTHER };

  struct Figures {
    Kind kind;
    uint32_t regions;
    uint64_t committed;
    uint64_t reserved;
  };

  // With more than eMAX_LOGGED heaps only their number is written.
  static void Log(const Figures* heaps, int32_t count);
  // With more than eMAX_CHECKED heaps none is validated. False when one fails.
  static bool Check(void* const* heaps, int32_t count);
  // Above 10 MB in MB, above 10240 bytes in KB.
  static void FormatSize(uint64_t size, char* target, int32_t capacity);

  // Platform: the process's heap count; the figures are walked only when
  // the count fits the capacity.
  static int32_t ListHeaps(Figures* heaps, int32_t capacity);
  static int32_t ListHandles(void** heaps, int32_t capacity);
  static bool Validate(void* heap);
};
