#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUString.h"

// One signed record of a session file: its pairs in file order, the
// signature, and the exact bytes the signature covers.
//
// The file is UTF-8 text. A record is a run of "key=value" lines closed by
// a "signature=<hex>" line; the signature covers the record's lines as they
// stand, line ends included. Blank lines and lines starting with '#'
// between records are ignored.
class LcUSessionRecord {
public:
  struct Pair {
    LcUString key;
    LcUString value;
  };
  using Bytes = std::vector<uint8_t, LcUAllocator<uint8_t>>;

  // Null when the record has no such key.
  const char16_t* Find(const char16_t* key) const;
  const std::vector<Pair, LcUAllocator<Pair>>& GetPairs() const { return pairs; }
  const Bytes& GetSignature() const { return signature; }
  const Bytes& GetSignedBytes() const { return signedBytes; }

  // False, with error set to the first fault and its line, on text that
  // isn't a whole session file; records then holds what came before it.
  static bool Read(const char* text, size_t length, std::vector<LcUSessionRecord, LcUAllocator<LcUSessionRecord>>& records,
                   LcUStringA& error);

private:
  std::vector<Pair, LcUAllocator<Pair>> pairs;
  Bytes signature;
  Bytes signedBytes;
};

using LcUSessionRecordList = std::vector<LcUSessionRecord, LcUAllocator<LcUSessionRecord>>;
