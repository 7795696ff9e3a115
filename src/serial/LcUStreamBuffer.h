#pragma once
#include <cstdint>

#include "serial/LcUStreamSink.h"

// A sink over one contiguous piece of memory. Written from empty it owns a
// heap block that doubles as it fills; after WriteEnd it describes exactly
// its data and can be read at once.
class LcUStreamBuffer : public LcUStreamSink {
public:
  enum : uint32_t { eINITIAL_SIZE = 65536 };

  LcUStreamBuffer() = default;
  ~LcUStreamBuffer() override;
  LcUStreamBuffer(const LcUStreamBuffer&) = delete;
  LcUStreamBuffer& operator=(const LcUStreamBuffer&) = delete;

  // Data to read (or to write into, when it is writable and aligned). Data
  // aligned to 8 is only referred to, unless `copy` asks for a copy.
  bool SetData(const void* data, uint32_t size, uint32_t copy = 0);
  // The memory passes to the caller, who frees it with LcUMemory::MallocFree.
  void* Detach();

  const uint8_t* GetData() const { return Aligned(start); }
  uint32_t GetSize() const { return start ? uint32_t(end - Aligned(start)) : 0; }
  // The heap block behind GetData, when the buffer owns one.
  void* GetOwnedBlock() const { return owned ? start : nullptr; }

  bool WriteBegin(LcUStream* stream) override;
  bool GetWriteBlock(uint8_t** block, uint32_t* size) override;
  bool CommitWrite(uint32_t count) override;
  bool WriteEnd() override;
  bool ReadBegin(LcUStream* stream) override;
  int32_t GetReadBlock(const uint8_t** block, uint32_t* size) override;
  bool ConsumeRead(uint32_t count) override;

private:
  static uint8_t* Aligned(uint8_t* p) { return reinterpret_cast<uint8_t*>((reinterpret_cast<uintptr_t>(p) + 7) & ~uintptr_t(7)); }
  static uint8_t* AlignedDown(uint8_t* p) { return reinterpret_cast<uint8_t*>(reinterpret_cast<uintptr_t>(p) & ~uintptr_t(7)); }
  void Release();
  bool Grow();

  uint8_t* start = nullptr;
  uint8_t* end = nullptr;
  uint8_t* cursor = nullptr;
  uint32_t owned = 0;
  uint64_t capacity = 0;  // of the owned heap block
};
