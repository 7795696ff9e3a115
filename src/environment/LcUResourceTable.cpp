#include "environment/LcUResourceTable.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "environment/LcUResourceParseState.h"
#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"

std::vector<LcUResourceTable::Name, LcUAllocator<LcUResourceTable::Name>> LcUResourceTable::pending;
LcUResourceFallback LcUResourceTable::fallback = nullptr;
void* LcUResourceTable::fallbackContext = nullptr;

namespace {
// Where the text came from: each replaced tag's value now ends before end.
struct Expansion {
  std::string key;
  int32_t end;
};

bool IsAscii(std::string_view text) {
  for (char c : text)
    if (static_cast<unsigned char>(c) > 0x7F) return false;
  return true;
}

void Fail(LcUResourceParseState* state, const char* text) {
  state->errorLine = state->line;
  state->errorText.Assign(text);
}

uint64_t Rotate(uint64_t h) {
  return (h << 31) | (h >> 33);
}

// Eight bytes a step, the tail read as two overlapping halves; the table
// takes the low bits, so the last step folds the high ones down.
uint64_t HashKey(std::string_view key) {
  constexpr uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  const char* p = key.data();
  size_t n = key.size();
  uint64_t h = (n + 1) * 0xC2B2AE3D27D4EB4Full;
  for (; n >= 8; p += 8, n -= 8) {
    uint64_t word;
    std::memcpy(&word, p, 8);
    h = Rotate((h ^ word) * kMultiplier);
  }
  uint64_t tail = 0;
  if (n >= 4) {
    uint32_t first, last;
    std::memcpy(&first, p, 4);
    std::memcpy(&last, p + n - 4, 4);
    tail = (uint64_t(first) << 32) | last;
  } else if (n > 0) {
    tail = (uint64_t(uint8_t(p[0])) << 16) | (uint64_t(uint8_t(p[n / 2])) << 8) | uint8_t(p[n - 1]);
  }
  h = (h ^ tail) * kMultiplier;
  return h ^ (h >> 32);
}

// Open addressing over a power-of-two array of hashes and entries, at most
// half full. Each entry holds its value with its key right behind it, so a
// look-up reads one slot and one entry. Entries never move, so references
// to values outlive insertions (a fallback's answer joins the table during
// substitution); they go only all at once.
class NameMap {
public:
  struct Entry {
    LcUString value;
    size_t length;
    const char* Key() const { return reinterpret_cast<const char*>(this + 1); }
  };

  Entry* Find(std::string_view key, uint64_t hash) const {
    if (!slots) return nullptr;
    for (uint64_t i = hash & mask;; i = (i + 1) & mask) {
      const Slot& slot = slots[i];
      if (!slot.entry) return nullptr;
      if (slot.hash == hash && slot.entry->length == key.size() &&
          std::memcmp(slot.entry->Key(), key.data(), key.size()) == 0)
        return slot.entry;
    }
  }

  // A new entry has a null value; null when memory can't be had.
  Entry* FindOrAdd(std::string_view key, uint64_t hash) {
    if (Entry* entry = Find(key, hash)) return entry;
    if ((count + 1) * 2 > mask + 1 && !Grow()) return nullptr;
    Entry* entry = NewEntry(key);
    if (!entry) return nullptr;
    Place(slots, mask, hash, entry);
    ++count;
    return entry;
  }

  void Clear() {
    for (uint64_t i = 0; slots && i <= mask; ++i)
      if (slots[i].entry) slots[i].entry->~Entry();
    if (slots) LcUMemory::Free(slots, (mask + 1) * sizeof(Slot), alignof(Slot));
    while (chunks) {
      Chunk* next = chunks->next;
      LcUMemory::Free(chunks, chunks->bytes, alignof(Chunk));
      chunks = next;
    }
    slots = nullptr;
    mask = count = 0;
    bump = nullptr;
    left = 0;
  }

private:
  struct Slot {
    uint64_t hash;
    Entry* entry;
  };
  struct Chunk {
    Chunk* next;
    size_t bytes;
  };
  static constexpr size_t kChunkBytes = 65536;

  static void Place(Slot* table, uint64_t tableMask, uint64_t hash, Entry* entry) {
    uint64_t i = hash & tableMask;
    while (table[i].entry) i = (i + 1) & tableMask;
    table[i] = {hash, entry};
  }

  bool Grow() {
    uint64_t size = slots ? (mask + 1) * 2 : 64;
    auto* grown = static_cast<Slot*>(LcUMemory::Alloc(size * sizeof(Slot), alignof(Slot), 0));
    if (!grown) return false;
    std::memset(static_cast<void*>(grown), 0, size * sizeof(Slot));
    for (uint64_t i = 0; slots && i <= mask; ++i)
      if (slots[i].entry) Place(grown, size - 1, slots[i].hash, slots[i].entry);
    if (slots) LcUMemory::Free(slots, (mask + 1) * sizeof(Slot), alignof(Slot));
    slots = grown;
    mask = size - 1;
    return true;
  }

  Entry* NewEntry(std::string_view key) {
    size_t bytes = (sizeof(Entry) + key.size() + 1 + alignof(Entry) - 1) & ~(alignof(Entry) - 1);
    if (bytes > left) {
      size_t size = sizeof(Chunk) + (bytes > kChunkBytes ? bytes : kChunkBytes);
      auto* chunk = static_cast<Chunk*>(LcUMemory::Alloc(size, alignof(Chunk), 0));
      if (!chunk) return nullptr;
      chunk->bytes = size;
      chunk->next = chunks;
      chunks = chunk;
      bump = reinterpret_cast<char*>(chunk + 1);
      left = size - sizeof(Chunk);
    }
    Entry* entry = new (bump) Entry();
    entry->length = key.size();
    char* text = reinterpret_cast<char*>(entry + 1);
    std::memcpy(text, key.data(), key.size());
    text[key.size()] = '\0';
    bump += bytes;
    left -= bytes;
    return entry;
  }

  Slot* slots = nullptr;
  uint64_t mask = 0;
  uint64_t count = 0;
  Chunk* chunks = nullptr;
  char* bump = nullptr;
  size_t left = 0;
};

// Constant-initialised: look-ups may come from other files' static
// initialisation.
NameMap names;
}  // namespace

const LcUString* LcUResourceTable::Find(const char* key) {
  if (!key) return nullptr;
  std::string_view text(key);
  uint64_t hash = HashKey(text);
  if (NameMap::Entry* entry = names.Find(text, hash)) return entry->value.IsNull() ? nullptr : &entry->value;
  if (!fallback) return nullptr;
  const char16_t* answer = fallback(fallbackContext, key);
  if (!answer) return nullptr;
  NameMap::Entry* entry = names.FindOrAdd(text, hash);
  if (!entry) return nullptr;
  entry->value.Assign(answer);
  return &entry->value;
}

LcUString* LcUResourceTable::Slot(std::string_view key) {
  NameMap::Entry* entry = names.FindOrAdd(key, HashKey(key));
  return entry ? &entry->value : nullptr;
}

bool LcUResourceTable::Add(const char* name, const char16_t* value, LcUResourceParseState* state,
                           const char* prefix) {
  Name key = prefix ? prefix : "";
  key += name;
  if (!IsAscii(key)) {
    if (state) Fail(state, "Internal name is not 7-bit ASCII.");
    return false;
  }
  LcUString* found = Slot(key);
  if (!found) return false;
  LcUString& slot = *found;
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
  if (substituted.IsEmpty())
    slot.Swap(given);
  else
    slot.Swap(substituted);
  return true;
}

LcUResourceTable::Substitution LcUResourceTable::Substitute(const Name& name, const LcUString& value,
                                                            LcUString& out, LcUResourceParseState* state) {
  out.Free();
  if (value.IsNull() || value.Find(u"${") < 0) return eSUBSTITUTED;
  out = value;
  std::vector<Expansion> within;
  // The text before the last replaced tag holds none, but its last "$" may
  // begin one with the inserted text; scanning goes on from there.
  int32_t from = 0;
  for (int32_t replaced = 0; !out.IsEmpty(); ++replaced) {
    int32_t open = out.Find(u"${", from);
    if (open < 0) return eSUBSTITUTED;
    within.erase(std::remove_if(within.begin(), within.end(), [open](const Expansion& e) { return e.end <= open; }),
                 within.end());
    int32_t close = out.FindChar(u'}', open + 2);
    LcUString tag;
    LcUStringA key;
    bool wellFormed = close > open + 2;
    if (wellFormed) {
      LcUString::Substring(out, open + 2, close, tag);
      wellFormed = LcUString::WideToMultiByte(tag.Get(), key);
    }
    // A tag inside its own key's value refers to itself: it would be replaced for ever.
    for (const Expansion& e : within)
      if (wellFormed && e.key == key.Get()) wellFormed = false;
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
    int32_t before = out.Length();
    out.ReplaceRange(open, close + 1, text->Get());
    for (Expansion& e : within) e.end += out.Length() - before;
    within.push_back({key.Get(), open + text->Length()});
    from = open > 0 ? open - 1 : 0;
  }
  return eSUBSTITUTED;
}

void LcUResourceTable::RunPendingPass() {
  for (size_t i = pending.size(); i-- > 0;) {
    NameMap::Entry* found = names.Find(pending[i], HashKey(pending[i]));
    LcUString* entry = found ? &found->value : nullptr;
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
  names.Clear();
  if (!pending.empty()) {
    LcUError::LogF("%d strings pending replacement:\n", int32_t(pending.size()));
    for (const Name& name : pending) LcUError::LogF("    %s\n", name.c_str());
  }
  decltype(pending)().swap(pending);
}
