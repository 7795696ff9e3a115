#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUString.h"

class LcUChecksum;
class LcUName;
class LcUNameTable;
class LcUStreamReader;
class LcUStreamWriter;
class LcUXMLDOMStream;

// One value of any of the system's scalar kinds, with fixed text, registry,
// binary and XML forms. Copies are deep, but for a name, which is shared
// by count. Parsers never raise: a refused text leaves the value empty.
class LcUData {
public:
  enum Tag : int32_t {
    eNONE = 0, eFLOAT = 1, eINT32 = 2, eBOOL = 3, eWSTRING = 4, eTIME = 5, eLINEAR = 6, eANGLE = 7, eNAME = 8,
    eSTRING = 9, eAREA = 10, eVOLUME = 11, eVECTOR3 = 12, eVECTOR2 = 13, eTAG_COUNT = 14
  };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  LcUData() = default;
  LcUData(const LcUData& other);
  LcUData(LcUData&& other) noexcept;
  LcUData& operator=(const LcUData& other);
  LcUData& operator=(LcUData&& other) noexcept;
  ~LcUData() { Clear(); }

  void Clear();
  // A floating tag takes a float: 1, 6, 7, 10 or 11.
  void SetFloat(double value, int32_t floatingTag = eFLOAT);
  void SetInt32(int32_t value);
  void SetBool(bool value);
  void SetWString(const char16_t* text);
  void SetTime(int64_t secondsSince1970);
  // Takes a count on the name.
  void SetName(LcUName* name);
  void SetString(const char* text);
  void SetVector3(double x, double y, double z);
  void SetVector2(double x, double y);

  int32_t GetTag() const { return tag; }
  bool IsEmpty() const { return tag == eNONE; }
  static bool IsFloating(int32_t tag) { return tag == eFLOAT || tag == eLINEAR || tag == eANGLE || tag == eAREA || tag == eVOLUME; }
  double GetFloat() const { return IsFloating(tag) ? value.number : 0.0; }
  int32_t GetInt32() const { return tag == eINT32 || tag == eBOOL ? value.integer : 0; }
  bool GetBool() const { return tag == eBOOL && value.integer == 1; }
  int64_t GetTime() const { return tag == eTIME ? value.time : 0; }
  const char16_t* GetWString() const { return tag == eWSTRING ? value.wide : nullptr; }
  const char* GetString() const { return tag == eSTRING ? value.narrow : nullptr; }
  LcUName* GetName() const { return tag == eNAME ? value.name : nullptr; }
  // Three or two values of a vector tag.
  const double* GetVector() const { return tag == eVECTOR3 || tag == eVECTOR2 ? value.vector : nullptr; }

  static bool Equal(const LcUData& a, const LcUData& b);
  // Equal, or both floating with equal numbers.
  static bool EqualNumeric(const LcUData& a, const LcUData& b);

  void ToDebugText(LcUString& out) const;
  // Appended to `out`.
  void ToText(LcUString& out) const;
  bool FromText(int32_t tag, const char16_t* text);
  void ToTaggedText(LcUString& out) const;
  bool FromTaggedText(const char16_t* text);
  void ToRegistryText(LcUString& out) const;
  // An empty text gives `defaultValue` when there is one.
  bool FromRegistryText(const char16_t* text, const LcUData* defaultValue);
  bool ToRegistry(const char16_t* key, const char16_t* name, uint32_t flags) const;
  bool FromRegistry(const char16_t* key, const char16_t* name, const LcUData* defaultValue, uint32_t flags);
  // A free-standing value: numbers as scanf reads them, with `wholeString`
  // the whole text; `endOut` gets the place behind what was read.
  bool Parse(const char16_t* text, int32_t tag, bool wholeString, int32_t* endOut);
  // "length:internaluser"; an empty text is a null name.
  static bool ParseNameText(const char16_t* text, LcUName*& out);

  void WriteBinary(LcUStreamWriter& stream) const;
  bool ReadBinary(LcUStreamReader& stream);
  // Reads or writes as the stream does; names read go through `table`.
  bool SerialiseXML(LcUXMLDOMStream& stream, LcUNameTable* table = nullptr);
  void AddToChecksum(LcUChecksum& checksum) const;

private:
  void CopyFrom(const LcUData& other);
  void SetVector(const double* values, int32_t vectorTag);

  int32_t tag = eNONE;
  union {
    double number;
    int32_t integer;
    int64_t time;
    char16_t* wide;
    char* narrow;
    LcUName* name;
    double* vector;
  } value{};
};
