#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUStringA.h"

class LcUStreamSink;
class LcUStreamFilterSink;
class LcUStreamFormat;

// What a stream's writer and reader share: the sink chain, the choices of
// the header and the sticky error. The first failure's code stands; after
// it writes do nothing and reads give zeros.
class LcUStream {
public:
  // The fixed type codes: binary debug tokens and the names of ascii ones.
  enum Type : int32_t {
    eBAD = 0, eSYNC = 1, eNAT8 = 2, eINT16 = 3, eNAT16 = 4, eINT32 = 5, eNAT32 = 6, eSINGLE = 7, eDOUBLE = 8,
    eFLOAT = 9, eBOOLEAN = 10, eENUM = 11, eBITFIELD = 12, eSTRING = 13, eNAT8_ARRAY = 14, eINT16_ARRAY = 15,
    eNAT16_ARRAY = 16, eINT32_ARRAY = 17, eNAT32_ARRAY = 18, eSINGLE_ARRAY = 19, eDOUBLE_ARRAY = 20,
    eFLOAT_ARRAY = 21, eOBJECT = 22, eOBJECT_END_DEF = 23, eNAT64 = 24, eNAT64_ARRAY = 25, eTYPE_COUNT = 26
  };
  enum TextEncoding : int32_t { eUTF8 = 0, eC = 1, eUTF8_PAIRED = 2 };
  enum Error : int32_t {
    eNO_FORMAT = 1, eNO_ENTRY = 2, eWRITE_BEGIN_FAILED = 3, eWRITE_NO_BLOCK = 4, eWRITE_COMMIT_FAILED = 5,
    eFLUSH_FAILED = 6, eWRITE_END_FAILED = 7, eREAD_BEGIN_FAILED = 8, eREAD_NO_BLOCK = 9, eREAD_CONSUME_FAILED = 10,
    eREAD_END_FAILED = 11, eNOT_ALIGNED = 12, eUNKNOWN_CONFIGURATION = 14, eMALFORMED = 15, eMISMATCH = 16,
    eBAD_DEFINITION = 17, eUNEXPECTED_END = 18, eDEFINITION_CONFLICT = 19, eNO_BASE = 20, eCREATE_FAILED = 21,
    eREAD_OBJECT_FAILED = 22, eWRITE_OBJECT_FAILED = 23, eWRONG_ENTRY = 24, eID_OUT_OF_ORDER = 25, eNOT_BEGUN = 26
  };
  enum : uint32_t { eMAX_STRING = 0x1000000, eMAX_WORD = 128 };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  // "Bad" for a code out of the table.
  static const char* TypeName(int32_t code);

  int32_t GetError() const { return error; }
  bool IsAscii() const { return ascii != 0; }
  uint32_t GetFormatVersion() const { return formatVersion; }
  // A code-16 failure, for readers of values that the stream carries but
  // does not check itself: "Read ..., expected ...", with the line in ascii.
  void FailMismatch(const char* read, const char* expected);

  LcUStreamSink* sink;
  int32_t error = eNOT_BEGUN;
  LcUStreamFormat* format = nullptr;
  LcUStringA formatName;
  uint32_t formatVersion = 0;
  std::vector<LcUStreamFilterSink*, LcUAllocator<LcUStreamFilterSink*>> filters;
  int32_t ascii = 0;
  int32_t doublePrecision = 1;
  int32_t debug = 0;
  int32_t textEncoding = eUTF8;
  LcUStreamSink* head = nullptr;

protected:
  LcUStream(LcUStreamSink* sink, uint32_t formatVersion) : sink(sink), formatVersion(formatVersion) {}
  ~LcUStream() = default;
  LcUStream(const LcUStream&) = delete;
  LcUStream& operator=(const LcUStream&) = delete;

  // Keeps the first code and logs the message; false, for tail calls.
  bool Fail(int32_t code, const char* format, ...);
  // Links the filters in order and the last to the base sink.
  void LinkChain();
  void UnlinkChain();
  // The ascii reader's line for messages; 0 where there is none.
  virtual int32_t MessageLine() const { return 0; }
};
