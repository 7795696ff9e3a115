#pragma once
#include <cstdint>

class LcUFileURLFile;
class LcUFileURLBlockList;

// One 64 KiB block of one file. Bit 4 of the state means no usable data,
// bit 5 data the local file lacks, bit 0 a transfer in flight.
struct LcUFileURLBlock {
  enum : uint32_t { eSIZE = 65536 };
  enum State : uint32_t {
    eVALID = 0,
    eEMPTY = 16,
    eREADING = 17,
    eDOWNLOADING = 18,
    eREAD_ERROR = 19,
    eDOWNLOAD_ERROR = 20,
    eDIRTY = 32,
    eWRITING = 33,
  };
  enum : uint32_t { eNO_DATA = 16, eUNSAVED = 32 };

  bool HasData() const { return (state & eNO_DATA) == 0; }

  uint32_t index = 0;
  LcUFileURLFile* file = nullptr;
  uint8_t* buffer = nullptr;
  int32_t refs = 0;
  uint32_t state = eEMPTY;
  uint32_t attempts = 0;
  // Links in the clean or the dirty list, and which of them holds it.
  LcUFileURLBlock* next = nullptr;
  LcUFileURLBlock* prev = nullptr;
  LcUFileURLBlockList* list = nullptr;
};
