#include <cstring>

#include "environment/LcUSysFile.h"
#include "serial/LcUGuid.h"
#include "serial/LcUSysCryptHashSHA1.h"

namespace {
// Small pieces are gathered so the platform hash sees few calls.
class NamedHash {
public:
  explicit NamedHash(const LcUGuid& nameSpace) {
    uint8_t bytes[16];
    nameSpace.ToBytes(bytes);
    Add(bytes, sizeof bytes);
  }

  void Add(const void* data, uint32_t size) {
    if (used + size > sizeof buffer) Flush();
    if (size >= sizeof buffer) {
      hash.Add(data, size);
      return;
    }
    std::memcpy(buffer + used, data, size);
    used += size;
  }

  void AddLittleEndian(uint64_t value, int bytes) {
    uint8_t le[8];
    for (int i = 0; i < bytes; ++i) le[i] = uint8_t(value >> (8 * i));
    Add(le, uint32_t(bytes));
  }

  // A hash the platform refused gives the nil GUID.
  void Finish(LcUGuid& out) {
    Flush();
    uint8_t digest[20];
    if (!hash.Finish(digest, sizeof digest)) {
      out = LcUGuid();
      return;
    }
    uint8_t bytes[16];
    std::memcpy(bytes, digest, 16);
    out.FromBytes(bytes);
    out.data3 = uint16_t((out.data3 & 0x0FFF) | 0x5000);
    out.data4[0] = uint8_t((out.data4[0] & 0x3F) | 0x80);
  }

private:
  void Flush() {
    if (used) hash.Add(buffer, used);
    used = 0;
  }

  LcUSysCryptHashSHA1 hash;
  uint8_t buffer[128];
  uint32_t used = 0;
};
}  // namespace

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const LcUGuid& data) {
  NamedHash hash(nameSpace);
  hash.AddLittleEndian(data.data1, 4);
  hash.AddLittleEndian(data.data2, 2);
  hash.AddLittleEndian(data.data3, 2);
  hash.Add(data.data4, 8);
  hash.Finish(out);
}

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, uint32_t data) {
  NamedHash hash(nameSpace);
  hash.AddLittleEndian(data, 4);
  hash.Finish(out);
}

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, uint64_t data) {
  NamedHash hash(nameSpace);
  hash.AddLittleEndian(data, 8);
  hash.Finish(out);
}

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const char* text) {
  MakeNamed(out, nameSpace, text, text ? uint32_t(std::strlen(text)) : 0u);
}

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const void* data, uint32_t size) {
  NamedHash hash(nameSpace);
  if (data) hash.Add(data, size);
  hash.Finish(out);
}

void LcUGuid::MakeNamed(LcUGuid& out, const LcUGuid& nameSpace, const char16_t* text) {
  NamedHash hash(nameSpace);
  for (const char16_t* at = text; at && *at; ++at) hash.AddLittleEndian(*at, 2);
  hash.Finish(out);
}

void LcUGuid::MakeNamedPath(LcUGuid& out, const LcUGuid& nameSpace, const char16_t* path) {
  LcUString canonical;
  LcUSysFile::Canonicalise(path ? path : u"", canonical);
  MakeNamed(out, nameSpace, canonical.IsNull() ? u"" : canonical.Get());
}
