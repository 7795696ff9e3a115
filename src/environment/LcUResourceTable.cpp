#include "environment/LcUResourceTable.h"

#include "environment/LcUResourceParseState.h"
#include "foundation/LcUError.h"

std::unordered_map<std::string_view, LcUString> LcUResourceTable::table;
std::deque<std::string> LcUResourceTable::keyStore;
std::vector<std::string> LcUResourceTable::pending;
LcUResourceFallback LcUResourceTable::fallback = nullptr;
void* LcUResourceTable::fallbackContext = nullptr;

namespace {
// A table that refers to itself would otherwise grow or loop for ever; no
// sane value needs this many replacements or this much text.
constexpr int32_t kMaxReplacements = 1024;
constexpr int32_t kMaxSubstitutedLength = 1 << 18;

bool IsAscii(const std::string& text) {
  for (char c : text)
    if (static_cast<unsigned char>(c) > 0x7F) return false;
  return true;
}

void Fail(LcUResourceParseState* state, const char* text) {
  state->errorLine = state->line;
  state->errorText.Assign(text);
}
}  // namespace

const LcUString* LcUResourceTable::Find(const char* key) {
  if (!key) return nullptr;
  auto it = table.find(key);
  if (it != table.end()) return it->second.IsNull() ? nullptr : &it->second;
  if (!fallback) return nullptr;
  const char16_t* text = fallback(fallbackContext, key);
  if (!text) return nullptr;
  LcUString& slot = Slot(key);
  slot.Assign(text);
  return &slot;
}

LcUString& LcUResourceTable::Slot(std::string_view key) {
  auto it = table.find(key);
  if (it != table.end()) return it->second;
  keyStore.emplace_back(key);
  return table[keyStore.back()];
}

bool LcUResourceTable::Add(const char* name, const char16_t* value, LcUResourceParseState* state,
                           const char* prefix) {
  std::string key = prefix ? prefix : "";
  key += name;
  if (!IsAscii(key)) {
    if (state) Fail(state, "Internal name is not 7-bit ASCII.");
    return false;
  }
  LcUString& slot = Slot(key);
  slot.Free();
  LcUString given(value);
  if (key.size() >= 5 && key.compare(key.size() - 5, 5, "nosub") == 0) {
    slot.Swap(given);
    return true;
  }
  LcUString substituted;
  Substitution result = Substitute(key, given, substituted, state);
  if (result == eKEY_MISSING) pending.push_back(key);
  if (state && !state->errorText.IsNull()) return false;
  // The map may have grown during look-ups with the fallback.
  LcUString& stored = Slot(key);
  if (substituted.IsEmpty())
    stored.Swap(given);
  else
    stored.Swap(substituted);
  return true;
}

LcUResourceTable::Substitution LcUResourceTable::Substitute(const std::string& name, const LcUString& value,
                                                            LcUString& out, LcUResourceParseState* state) {
  out.Free();
  if (value.IsNull() || value.Find(u"${") < 0) return eSUBSTITUTED;
  out = value;
  for (int32_t replaced = 0; !out.IsEmpty(); ++replaced) {
    int32_t open = out.Find(u"${");
    if (open < 0) return eSUBSTITUTED;
    int32_t close = out.FindChar(u'}', open + 2);
    LcUString tag;
    LcUStringA key;
    bool wellFormed = close > open + 2 && replaced < kMaxReplacements && out.Length() < kMaxSubstitutedLength;
    if (wellFormed) {
      LcUString::Substring(out, open + 2, close, tag);
      wellFormed = LcUString::WideToMultiByte(tag.Get(), key);
    }
    if (!wellFormed) {
      if (state) {
        Fail(state, "Malformed tag in user name.");
        return eMALFORMED;
      }
      LcUError::PostF(LcUError::eWARNING, &LcUResource::component, "Malformed string: %s", name.c_str());
      return eSUBSTITUTED;
    }
    const LcUString* text = Find(key.Get());
    if (!text) {
      if (replaced == 0) out.Clear();
      return eKEY_MISSING;
    }
    out.ReplaceRange(open, close + 1, text->Get());
  }
  return eSUBSTITUTED;
}

void LcUResourceTable::RunPendingPass() {
  for (size_t i = pending.size(); i-- > 0;) {
    auto it = table.find(pending[i]);
    // A reference, unlike the iterator, outlives a fallback's insertion.
    LcUString* entry = it == table.end() ? nullptr : &it->second;
    LcUString substituted;
    Substitution result = entry ? Substitute(pending[i], *entry, substituted, nullptr) : eSUBSTITUTED;
    if (!substituted.IsEmpty()) entry->Swap(substituted);
    if (result != eKEY_MISSING) pending.erase(pending.begin() + std::ptrdiff_t(i));
  }
}

void LcUResourceTable::SetFallback(LcUResourceFallback function, void* context) {
  fallback = function;
  fallbackContext = context;
}

void LcUResourceTable::Clear() {
  std::unordered_map<std::string_view, LcUString>().swap(table);
  std::deque<std::string>().swap(keyStore);
  if (!pending.empty()) {
    LcUError::LogF("%d strings pending replacement:\n", int32_t(pending.size()));
    for (const std::string& name : pending) LcUError::LogF("    %s\n", name.c_str());
  }
  std::vector<std::string>().swap(pending);
}
