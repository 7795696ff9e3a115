#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// Adler-32 over bytes given piece by piece. The sums are reduced only every
// 5552 bytes, the most that can be added before b could overflow.
class LcUChecksum {
public:
  enum : uint32_t { eMODULUS = 65521, eRUN = 5552 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  LcUChecksum() { Init(); }
  void Init();
  void Add(const void* bytes, uint32_t count);
  // Reduces the sums, so it may be called between additions.
  uint32_t GetResult();

  void AddInt8s(const int8_t* values, uint32_t count) { Add(values, count); }
  void AddNat8s(const uint8_t* values, uint32_t count) { Add(values, count); }
  void AddInt16s(const int16_t* values, uint32_t count) { Add(values, count * 2u); }
  void AddNat16s(const uint16_t* values, uint32_t count) { Add(values, count * 2u); }
  void AddInt32s(const int32_t* values, uint32_t count) { Add(values, count * 4u); }
  void AddNat32s(const uint32_t* values, uint32_t count) { Add(values, count * 4u); }
  void AddInt64s(const int64_t* values, uint32_t count) { Add(values, count * 8u); }
  void AddNat64s(const uint64_t* values, uint32_t count) { Add(values, count * 8u); }
  void AddFloats(const float* values, uint32_t count) { Add(values, count * 4u); }
  void AddDoubles(const double* values, uint32_t count) { Add(values, count * 8u); }
  // Without the terminator; a null string counts as one zero byte.
  void AddString(const char* text);
  void AddWideString(const char16_t* text);

private:
  void Reduce();

  uint32_t a;
  uint32_t b;
  int32_t countdown;
};
