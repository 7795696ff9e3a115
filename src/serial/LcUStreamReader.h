#pragma once
#include <cstdint>
#include <cstring>

#include "foundation/LcUString.h"
#include "serial/LcUStream.h"
#include "serial/LcUStreamObjectList.h"

class LcUNameTable;
class LcUStreamUnknownData;

// Typed values from a sink, the exact counterpart of LcUStreamWriter. Reading
// is strict: a bad pad, token or word fails the stream, and from then on
// every read gives zeros and consumes nothing.
class LcUStreamReader : public LcUStream {
public:
  explicit LcUStreamReader(LcUStreamSink* sink, uint32_t formatVersion = 0);
  ~LcUStreamReader();

  // With a header, the stream's choices and its filters come from it; an
  // unknown format name fails only when `strict`.
  bool ReadBegin(bool readHeader = true, bool strict = false);
  bool ReadEnd(bool checkEnd = true);
  // The counterpart of the writer's Flush.
  void Sync();
  // A filter that a header may name.
  void OfferFilter(LcUStreamFilterSink* filter);
  // A format that a header may name, tried in the order offered.
  void OfferFormat(LcUStreamFormat* format);

  // An object of `expectedEntry` (fails with 24 otherwise), or null.
  void* ReadObject(int32_t expectedEntry);
  // An object of any entry; for a class the format lacks, the object is of
  // its nearest known base and `unknownData`, if given, receives the rest.
  void* ReadAnyObject(int32_t* entry, LcUStreamUnknownData** unknownData);
  // The counterpart of the writer's WriteKnownId: `id` must be the next one.
  bool ReadKnownId(uint32_t id, void* object, int32_t entry);
  // The format as the file's definitions extended it; the caller owns it
  // from here on, and it serves to write objects with unknown tails again.
  LcUStreamFormat* TakeWorkingFormat();

  uint8_t ReadNat8() {
    if (alignState > 0 && blockCurrent < blockEnd && !(ascii | debug | error)) {
      alignState = 1;
      return *blockCurrent++;
    }
    uint8_t value;
    GetValues(&value, 1, eNAT8, false);
    return value;
  }
  int16_t ReadInt16() { return GetScalar<int16_t>(eINT16); }
  uint16_t ReadNat16() { return GetScalar<uint16_t>(eNAT16); }
  int32_t ReadInt32() { return GetScalar<int32_t>(eINT32); }
  uint32_t ReadNat32() { return GetScalar<uint32_t>(eNAT32); }
  uint64_t ReadNat64() { return GetScalar<uint64_t>(eNAT64); }
  float ReadSingle() { return GetScalar<float>(eSINGLE); }
  double ReadDouble() { return GetScalar<double>(eDOUBLE); }
  double ReadFloat() {
    if (doublePrecision) return GetScalar<double>(eFLOAT);
    double value;
    GetValues(&value, 1, eFLOAT, false);
    return value;
  }
  bool ReadBoolean() { return GetScalar<uint32_t>(eBOOLEAN) != 0; }
  uint32_t ReadEnum() { return GetScalar<uint32_t>(eENUM); }
  uint32_t ReadBitfield() { return GetScalar<uint32_t>(eBITFIELD); }
  // A negative value, or one above `maximum`, fails the stream with code 16.
  int32_t ReadInt32Checked(int32_t maximum = 0x7FFFFFFF);

  bool ReadNat8Array(uint8_t* values, uint32_t count) { return GetValues(values, count, eNAT8, true); }
  bool ReadInt16Array(int16_t* values, uint32_t count) { return GetValues(values, count, eINT16, true); }
  bool ReadNat16Array(uint16_t* values, uint32_t count) { return GetValues(values, count, eNAT16, true); }
  bool ReadInt32Array(int32_t* values, uint32_t count) { return GetValues(values, count, eINT32, true); }
  bool ReadNat32Array(uint32_t* values, uint32_t count) { return GetValues(values, count, eNAT32, true); }
  bool ReadNat64Array(uint64_t* values, uint32_t count) { return GetValues(values, count, eNAT64, true); }
  bool ReadSingleArray(float* values, uint32_t count) { return GetValues(values, count, eSINGLE, true); }
  bool ReadDoubleArray(double* values, uint32_t count) { return GetValues(values, count, eDOUBLE, true); }
  bool ReadFloatArray(double* values, uint32_t count) { return GetValues(values, count, eFLOAT, true); }

  // A null string leaves `text` null; after an error it is null too.
  bool ReadString(LcUStringA& text);
  bool ReadWideString(LcUString& text);

  // The counterpart of WriteBits; a value may span two words.
  uint32_t ReadBits(uint32_t count);
  // Drops what is left of a partly read word; answers how many words were read.
  uint32_t FlushBits();

  // Ascii reading for the object layer: a word of at most 128 characters
  // (0 at the end of the data), and text that must come next.
  uint32_t ReadWord(char* word);
  bool ExpectText(const char* text);
  void ExpectToken(int32_t code, uint32_t count, bool array);

  int32_t alignState = 0;
  const uint8_t* blockStart = nullptr;
  const uint8_t* blockEnd = nullptr;
  const uint8_t* blockCurrent = nullptr;
  int32_t atEnd = 0;
  int32_t line = 1;
  uint32_t bitWord = 0;
  uint32_t bitsLeft = 0;
  uint32_t bitWordCount = 0;
  LcUStreamFormat* workingFormat = nullptr;
  int32_t ownsWorkingFormat = 0;
  uint32_t nextId = 100;
  // Where names read go to be shared; none by default.
  LcUNameTable* names = nullptr;
  // By id - 100: each object read and the entry it was made as.
  LcUStreamObjectList objects;
  // An entry index in the file to one in the working format.
  std::vector<int32_t, LcUAllocator<int32_t>> entryMap;

protected:
  int32_t MessageLine() const override { return ascii ? line : 0; }

private:
  template <typename T>
  T GetScalar(int32_t code) {
    T value;
    if (alignState >= int32_t(sizeof(T)) && blockEnd - blockCurrent >= int32_t(sizeof(T)) && !(ascii | debug | error)) {
      std::memcpy(&value, blockCurrent, sizeof(T));
      blockCurrent += sizeof(T);
      alignState = int32_t(sizeof(T));
      return value;
    }
    GetValues(&value, 1, code, false);
    return value;
  }
  bool GetValues(void* values, uint32_t count, int32_t code, bool array);
  void GetBinary(void* values, uint32_t count, int32_t code);
  void GetAscii(void* values, uint32_t count, int32_t code);
  void GetQuoted(LcUStringA& text);
  bool SkipPad(uint32_t size);
  bool ShortBlock();
  bool NextBlock();
  void DropBlock();
  int Peek() { return blockCurrent < blockEnd || NextBlock() ? *blockCurrent : -1; }
  int Get();
  void SkipWhite();
  bool FailEnd();
  bool ReadHeader(bool strict);
  bool Choose(char first, const char* yes, const char* no, bool& chosen);
  uint32_t ReadHeaderWord(char* word, bool& lineEnded);
  bool BeginFilters();
  bool SelectFormat(const char* word, bool strict);
  void StartTables();
  void ReadDefinitions();
  bool Define(int32_t index, const char* name, int32_t base);
  void EndTables();
  // A reference: 0 null, 1 an earlier object, 2 a first time; the id and the
  // entry in the working format.
  // Copying passes on references without looking them up.
  int32_t ReadReference(uint32_t* id, int32_t* entry, bool lookedUp = true);
  int32_t MappedEntry(int32_t fileEntry) const;
  void* ReadFirstTime(uint32_t id, int32_t entry, int32_t* working, LcUStreamUnknownData** unknownData);
  void* ReadNewObject(int32_t entry, int32_t* working, LcUStreamUnknownData** unknownData);
  bool AddObject(void* object, int32_t entry);
  // The id of a first-time object must be the next one: code 16 otherwise.
  bool TakeNextId(uint32_t id);

  friend class LcUStreamCopy;
  friend class LcUStreamNameHooks;
  // The row of a name, which the table holds a count on.
  enum : int32_t { eNAME_ROW = -2 };
  // How deep first-time objects may nest.
  enum : int32_t { eMAX_DEPTH = 2000 };
  int32_t depth = 0;

  LcUStreamSink* blockSink = nullptr;
  std::vector<LcUStreamFilterSink*, LcUAllocator<LcUStreamFilterSink*>> offered;
  std::vector<LcUStreamFormat*, LcUAllocator<LcUStreamFormat*>> offeredFormats;
};
