#include "serial/LcUGuid.h"

#include <cstring>

#include "serial/LcUSysRandom.h"

bool LcUGuid::IsNil() const {
  return data1 == 0 && data2 == 0 && data3 == 0 && std::memcmp(data4, "\0\0\0\0\0\0\0\0", 8) == 0;
}

void LcUGuid::Clear() {
  *this = LcUGuid();
}

void LcUGuid::FromBytes(const uint8_t (&bytes)[16]) {
  data1 = uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
  data2 = uint16_t(bytes[4] << 8 | bytes[5]);
  data3 = uint16_t(bytes[6] << 8 | bytes[7]);
  std::memcpy(data4, bytes + 8, 8);
}

void LcUGuid::ToBytes(uint8_t (&bytes)[16]) const {
  bytes[0] = uint8_t(data1 >> 24);
  bytes[1] = uint8_t(data1 >> 16);
  bytes[2] = uint8_t(data1 >> 8);
  bytes[3] = uint8_t(data1);
  bytes[4] = uint8_t(data2 >> 8);
  bytes[5] = uint8_t(data2);
  bytes[6] = uint8_t(data3 >> 8);
  bytes[7] = uint8_t(data3);
  std::memcpy(bytes + 8, data4, 8);
}

bool LcUGuid::Generate() {
  uint8_t bytes[16];
  if (!LcUSysRandom::Fill(bytes, sizeof bytes)) {
    Clear();
    return false;
  }
  // The bytes stand as the system lays out a version 4 value, data3 low
  // byte first; read in network order, the version lands in data3's second byte.
  bytes[7] = uint8_t((bytes[7] & 0x0F) | 0x40);
  bytes[8] = uint8_t((bytes[8] & 0x3F) | 0x80);
  FromBytes(bytes);
  return true;
}

int LcUGuid::Compare(const LcUGuid& other) const {
  if (data1 != other.data1) return data1 < other.data1 ? -1 : 1;
  if (data2 != other.data2) return data2 < other.data2 ? -1 : 1;
  if (data3 != other.data3) return data3 < other.data3 ? -1 : 1;
  int c = std::memcmp(data4, other.data4, 8);
  return c < 0 ? -1 : c > 0 ? 1 : 0;
}
