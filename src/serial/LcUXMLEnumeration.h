#pragma once
#include <cstdint>

#include "foundation/LcUString.h"

class LcUXMLDOMStream;

// An attribute that carries one of a list of numbers as its word. Misses
// set the helper's text and status and the stream's error: 16 for a number
// out of the list, 17 for an absent attribute, 15 for an unknown word; a
// read that misses gives the default.
class LcUXMLEnumeration {
public:
  struct Pair {
    int32_t number;
    const char* word;
  };

  LcUXMLEnumeration(const Pair* pairs, int32_t count) : pairs(pairs), count(count) {}

  bool Serialise(LcUXMLDOMStream& stream, const char* attribute, int32_t& number, int32_t defaultValue);
  const char* WordOf(int32_t number) const;

  LcUString errorText;
  int32_t status = 0;

private:
  const Pair* pairs;
  int32_t count;
};
