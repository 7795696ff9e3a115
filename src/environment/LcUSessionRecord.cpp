#include "environment/LcUSessionRecord.h"

#include <cstring>

namespace {
int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool ReadHex(const char* text, size_t length, LcUSessionRecord::Bytes& out) {
  if (length == 0 || length % 2) return false;
  out.clear();
  for (size_t i = 0; i < length; i += 2) {
    int high = HexDigit(text[i]), low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return false;
    out.push_back(uint8_t(high * 16 + low));
  }
  return true;
}

bool Fail(LcUStringA& error, const char* what, int32_t line) {
  error.Format("%s at line %d", what, line);
  return false;
}
}  // namespace

const char16_t* LcUSessionRecord::Find(const char16_t* key) const {
  for (const Pair& pair : pairs)
    if (LcUString::Equal(pair.key.Get(), key)) return pair.value.Get() ? pair.value.Get() : u"";
  return nullptr;
}

bool LcUSessionRecord::Read(const char* text, size_t length, LcUSessionRecordList& records, LcUStringA& error) {
  static const char kSignature[] = "signature=";
  const size_t signatureLength = sizeof kSignature - 1;
  LcUSessionRecord record;
  bool open = false;
  int32_t line = 0;
  const char* end = text + length;
  for (const char* start = text; start < end;) {
    ++line;
    const char* stop = static_cast<const char*>(std::memchr(start, '\n', size_t(end - start)));
    const char* next = stop ? stop + 1 : end;
    const char* content = start;
    size_t size = size_t((stop ? stop : end) - start);
    if (size && content[size - 1] == '\r') --size;
    start = next;
    if (std::memchr(content, '\0', size)) return Fail(error, "NUL byte", line);
    if (!open && (size == 0 || content[0] == '#')) continue;
    if (size >= signatureLength && std::memcmp(content, kSignature, signatureLength) == 0) {
      if (!open) return Fail(error, "signature without a record", line);
      if (!ReadHex(content + signatureLength, size - signatureLength, record.signature))
        return Fail(error, "bad signature", line);
      records.push_back(static_cast<LcUSessionRecord&&>(record));
      record = LcUSessionRecord();
      open = false;
      continue;
    }
    const char* equals = static_cast<const char*>(std::memchr(content, '=', size));
    if (!equals || equals == content) return Fail(error, "expected key=value", line);
    Pair pair;
    if (!LcUString::UTF8ToUTF16(content, int32_t(equals - content), pair.key) ||
        !LcUString::UTF8ToUTF16(equals + 1, int32_t(content + size - equals - 1), pair.value))
      return Fail(error, "invalid UTF-8", line);
    record.signedBytes.insert(record.signedBytes.end(), reinterpret_cast<const uint8_t*>(content),
                              reinterpret_cast<const uint8_t*>(next));
    record.pairs.push_back(static_cast<Pair&&>(pair));
    open = true;
  }
  if (open) return Fail(error, "record without a signature", line);
  return true;
}
