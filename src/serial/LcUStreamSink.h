#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUDeletable.h"

class LcUStream;

// Where a stream's bytes go to or come from. The sink lends its own memory:
// a stream fills or reads a block in place and then says how much it used.
// Write operations answer true on success; GetReadBlock answers 0 on success
// and reports the end of the data as a null block of size 0.
class LcUStreamSink : public LcUDeletable {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  virtual bool WriteBegin(LcUStream* stream) = 0;
  // The block must be 8-byte aligned.
  virtual bool GetWriteBlock(uint8_t** block, uint32_t* size) = 0;
  virtual bool CommitWrite(uint32_t count) = 0;
  virtual bool Flush();
  virtual bool WriteEnd();
  virtual bool ReadBegin(LcUStream* stream);
  virtual int32_t GetReadBlock(const uint8_t** block, uint32_t* size) = 0;
  virtual bool ConsumeRead(uint32_t count) = 0;
  virtual bool ReadEnd();
  // Whole regions, which is what makes every block 8-byte aligned.
  virtual void* AllocBlock(uint32_t size);
  virtual bool FreeBlock(void* block, uint32_t size);

protected:
  static uint64_t RegionRounded(uint32_t size);
};
