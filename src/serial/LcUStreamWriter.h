#pragma once
#include <cstdint>
#include <cstring>
#include "serial/LcUStream.h"
#include "serial/LcUStreamObjectIds.h"

class LcUStreamUnknownData;

// Typed values into a sink, in ascii or binary, with a type token before
// each value in debug streams. Values go straight into the block the head
// sink lends; nothing is copied twice.
class LcUStreamWriter : public LcUStream {
public:
  explicit LcUStreamWriter(LcUStreamSink* sink, uint32_t formatVersion = 0);
  ~LcUStreamWriter();

  // The definitions go out after the header when the format writes them;
  // `writeDefinitions` says whether they list the derived classes.
  bool WriteBegin(bool writeHeader = true, bool writeDefinitions = false);
  // Flushes and ends the chain; true when the stream had no error.
  bool WriteEnd();
  // A sync point: the token in debug, padding to 8 in binary, the block
  // committed and the sink flushed.
  void Flush();

  void WriteNat8(uint8_t value) {
    if (alignState > 0 && blockCurrent < blockEnd && !(ascii | debug | error)) {
      *blockCurrent++ = value;
      alignState = 1;
      return;
    }
    PutValues(&value, 1, eNAT8, false);
  }
  void WriteInt16(int16_t value) { PutScalar(value, eINT16); }
  void WriteNat16(uint16_t value) { PutScalar(value, eNAT16); }
  void WriteInt32(int32_t value) { PutScalar(value, eINT32); }
  void WriteNat32(uint32_t value) { PutScalar(value, eNAT32); }
  void WriteNat64(uint64_t value) { PutScalar(value, eNAT64); }
  void WriteSingle(float value) { PutScalar(value, eSINGLE); }
  void WriteDouble(double value) { PutScalar(value, eDOUBLE); }
  // A double in memory; narrowed on the wire unless the stream is "double".
  void WriteFloat(double value) {
    if (doublePrecision)
      PutScalar(value, eFLOAT);
    else
      PutValues(&value, 1, eFLOAT, false);
  }
  void WriteBoolean(bool value) { PutScalar(uint32_t(value ? 1 : 0), eBOOLEAN); }
  void WriteEnum(uint32_t value) { PutScalar(value, eENUM); }
  void WriteBitfield(uint32_t value) { PutScalar(value, eBITFIELD); }

  void WriteNat8Array(const uint8_t* values, uint32_t count) { PutValues(values, count, eNAT8, true); }
  void WriteInt16Array(const int16_t* values, uint32_t count) { PutValues(values, count, eINT16, true); }
  void WriteNat16Array(const uint16_t* values, uint32_t count) { PutValues(values, count, eNAT16, true); }
  void WriteInt32Array(const int32_t* values, uint32_t count) { PutValues(values, count, eINT32, true); }
  void WriteNat32Array(const uint32_t* values, uint32_t count) { PutValues(values, count, eNAT32, true); }
  void WriteNat64Array(const uint64_t* values, uint32_t count) { PutValues(values, count, eNAT64, true); }
  void WriteSingleArray(const float* values, uint32_t count) { PutValues(values, count, eSINGLE, true); }
  void WriteDoubleArray(const double* values, uint32_t count) { PutValues(values, count, eDOUBLE, true); }
  void WriteFloatArray(const double* values, uint32_t count) { PutValues(values, count, eFLOAT, true); }

  // Null is the null string, distinct from the empty one.
  void WriteString(const char* text);
  void WriteString(const char* text, int32_t length);
  void WriteWideString(const char16_t* text);

  // Packs the low `count` bits of value into 32-bit words, from the top bit down.
  void WriteBits(uint32_t value, uint32_t count);
  // Writes a partly filled word; answers how many words went out.
  uint32_t FlushBits();

  void SetSinglePrecision(int32_t digits);
  void SetDoublePrecision(int32_t digits);
  void SetSingleZeroThreshold(double threshold) { singleZeroThreshold = threshold; }
  void SetDoubleZeroThreshold(double threshold) { doubleZeroThreshold = threshold; }
  void SetValuesPerLine(int32_t count) { valuesPerLine = count; }

  // Each object once, then references to its id; 0 for null. An object read
  // as a base of a class this format lacks gives its unknown tail back here.
  uint32_t WriteObject(const void* object, int32_t entry, const LcUStreamUnknownData* unknownData = nullptr);
  // Counts an object as written without writing it; its id, 0 on failure.
  uint32_t WriteKnownId(const void* object, int32_t entry);

  // The object layer's forms, for copying.
  void WriteNullObject();
  void WriteObjectUse(uint32_t id);
  void WriteObjectDef(uint32_t id, int32_t entry, const char* name);
  void WriteObjectClose();

  // Raw ascii text at the current place, for the object layer's own words.
  void WriteText(const char* text, uint32_t length);
  void WriteIndent();
  // The debug token of a value of `code`, with its count for arrays.
  void WriteToken(int32_t code, uint32_t count, bool array);

  int32_t alignState = 0;
  uint8_t* blockStart = nullptr;
  uint8_t* blockEnd = nullptr;
  uint8_t* blockCurrent = nullptr;
  int32_t valuesPerLine = 0;
  int32_t indent = 2;
  int32_t singlePrecision = 8;
  int32_t doubleDigits = 17;
  double singleZeroThreshold = 0.0;
  double doubleZeroThreshold = 0.0;
  uint32_t bitWord = 0;
  uint32_t bitsFree = 32;
  uint32_t bitWordCount = 0;
  uint32_t nextId = 100;

private:
  friend class LcUStreamCopy;
  template <typename T>
  void PutScalar(T value, int32_t code) {
    if (alignState >= int32_t(sizeof(T)) && blockEnd - blockCurrent >= int32_t(sizeof(T)) && !(ascii | debug | error)) {
      std::memcpy(blockCurrent, &value, sizeof(T));
      blockCurrent += sizeof(T);
      alignState = int32_t(sizeof(T));
      return;
    }
    PutValues(&value, 1, code, false);
  }
  void PutValues(const void* values, uint32_t count, int32_t code, bool array);
  void PutBinary(const void* values, uint32_t count, int32_t code);
  void PutAscii(const void* values, uint32_t count, int32_t code);
  void PutQuoted(const char* text, int32_t length);
  void Align(uint32_t size);
  bool NextBlock();
  bool CommitBlock();
  uint32_t WireSize(int32_t code) const;

  void PutRaw32(uint32_t value) { PutBinary(&value, 1, eNAT32); }
  void WriteDefinitions(bool derived);

  // The header goes to the base sink, past the filters.
  LcUStreamSink* blockSink = nullptr;
  LcUStreamObjectIds objectIds;
};
