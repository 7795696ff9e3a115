#pragma once
#include <cstdint>

#include "foundation/LcUString.h"
#include "foundation/LcUStringA.h"

// A 16-byte identifier. Its first three fields hold the network-order view
// of the bytes, so text, bytes and named hashing agree on every platform.
class LcUGuid {
public:
  uint32_t data1 = 0;
  uint16_t data2 = 0;
  uint16_t data3 = 0;
  uint8_t data4[8] = {};

  static const char* const kDefaultCompactAlphabet;

  bool IsNil() const;
  // A random (version 4) value; nil and false when the system gave no random bytes.
  bool Generate();
  // Bytes in network order: data1, data2 and data3 high byte first.
  void FromBytes(const uint8_t (&bytes)[16]);
  void ToBytes(uint8_t (&bytes)[16]) const;
  // "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx", either case; nil and false otherwise.
  bool FromText(const char* text);
  bool FromText(const char16_t* text);
  // Exactly 22 characters of a 64-character alphabet (null: the default).
  bool FromCompactText(const char* text, const char* alphabet = nullptr);
  bool FromCompactText(const char16_t* text, const char* alphabet = nullptr);
  // Lower case.
  void ToText(LcUStringA& out) const;
  void ToText(LcUString& out) const;

  // Version 5 named values: SHA-1 of the namespace, fields in network
  // order, then the data. Numbers, wide text units and a data GUID's fields
  // go in little-endian order.
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const LcUGuid& data);
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, uint32_t data);
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, uint64_t data);
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const char* text);
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const void* data, uint32_t size);
  static void MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const char16_t* text);
  // The canonical form of the path, hashed as wide text.
  static void MakeNamedPath(LcUGuid& out, const LcUGuid& nameSpace, const char16_t* path);

  int Compare(const LcUGuid& other) const;
  bool operator==(const LcUGuid& other) const { return Compare(other) == 0; }
  bool operator!=(const LcUGuid& other) const { return Compare(other) != 0; }
  bool operator<(const LcUGuid& other) const { return Compare(other) < 0; }

private:
  void Clear();
};
