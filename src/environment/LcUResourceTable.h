#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "environment/LcUResource.h"
#include "foundation/LcUAllocator.h"

// The string table behind LcUResource: pairs, tag substitution and the
// names still waiting for a tag's key.
class LcUResourceTable {
public:
  enum Substitution { eSUBSTITUTED, eKEY_MISSING, eMALFORMED };

  // Null when the key is unknown or its entry is still being substituted.
  static const LcUString* Find(const char* key);
  // Fails when the key isn't 7-bit ASCII or a tag is malformed; the
  // state, when given, then says why.
  static bool Add(const char* name, const char16_t* value, LcUResourceParseState* state, const char* prefix);
  // One walk over the pending names, last to first.
  static void RunPendingPass();
  static void SetFallback(LcUResourceFallback fallback, void* context);
  // Logs what is still pending, then frees everything.
  static void Clear();

private:
  using Name = std::basic_string<char, std::char_traits<char>, LcUAllocator<char>>;
  // The entry of key, made empty when new; null when memory can't be had.
  static LcUString* Slot(std::string_view key);
  // out stays null when value holds no tag.
  static Substitution Substitute(const Name& name, const LcUString& value, LcUString& out,
                                 LcUResourceParseState* state);

  static std::vector<Name, LcUAllocator<Name>> pending;
  static LcUResourceFallback fallback;
  static void* fallbackContext;
};
