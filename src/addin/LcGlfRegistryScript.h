#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUString.h"

// The module's registry script: a tree of keys with default and named
// values, "NoRemove" (never deleted on unregistering) and "ForceRemove"
// (deleted whole before registering and on unregistering).
//
//   HKCR { Name = s 'text' { val Named = d 1  Child { ... } } }
class LcGlfRegistryScript {
public:
  enum { eVALUE_NONE = 0, eVALUE_STRING = 1, eVALUE_DWORD = 4 };
  enum { eKEY_PLAIN = 0, eKEY_NO_REMOVE = 1, eKEY_FORCE_REMOVE = 2 };

  struct Value {
    LcUString name;  // empty: the key's default value
    int type = eVALUE_NONE;
    LcUString text;
    uint32_t number = 0;
  };

  struct Key {
    LcUString name;
    int removal = eKEY_PLAIN;
    std::vector<Value> values;
    std::vector<Key> children;
  };

  // Parses UTF-8 script text with every "%MODULE%" replaced by modulePath.
  // On failure the error text names the line.
  bool Parse(const char* text, int64_t length, const char16_t* modulePath);
  const LcUStringA& GetError() const { return error; }
  // The hive's top-level keys; the hive must be HKCR.
  const std::vector<Key>& GetKeys() const { return root.children; }

private:
  Key root;
  LcUStringA error;
};
