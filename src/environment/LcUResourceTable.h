#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "environment/LcUResource.h"

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
  // The entry of key, made empty when new.
  static LcUString& Slot(std::string_view key);
  // out stays null when value holds no tag.
  static Substitution Substitute(const std::string& name, const LcUString& value, LcUString& out,
                                 LcUResourceParseState* state);

  static std::vector<std::string> pending;
  static LcUResourceFallback fallback;
  static void* fallbackContext;
};
