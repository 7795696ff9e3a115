#include <cstdio>
#include <cstdlib>

#include "foundation/LcUMemory.h"

#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamCopy.h"
#include "serial/LcUName.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamUnknownData.h"
#include "serial/LcUStreamWriter.h"

namespace {
constexpr int32_t kMaxDefinedIndex = 0x4000;

bool ParseDecimal(const char* word, int64_t& value) {
  char* end = nullptr;
  value = std::strtoll(word, &end, 10);
  return *word && end && *end == 0;
}
}  // namespace

void LcUStreamReader::StartTables() {
  nextId = 100;
  workingFormat = format;
  ownsWorkingFormat = 0;
  // Without definitions the file's entries are this format's own.
  entryMap.clear();
  if (format)
    for (size_t i = 0; i < format->entries.size(); ++i) entryMap.push_back(int32_t(i));
}

void LcUStreamReader::EndTables() {
  for (uint32_t i = 0; i < objects.Size(); ++i)
    if (objects[i].entry == eNAME_ROW && objects[i].object) static_cast<LcUName*>(objects[i].object)->Release();
  objects.Clear();
  entryMap.clear();
  if (ownsWorkingFormat) delete workingFormat;
  workingFormat = nullptr;
  ownsWorkingFormat = 0;
}

LcUStreamFormat* LcUStreamReader::TakeWorkingFormat() {
  if (!workingFormat) return nullptr;
  if (!ownsWorkingFormat) {
    LcUStreamFormat* copy = new LcUStreamFormat(*workingFormat);
    if (!copy) return nullptr;
    workingFormat = copy;
  }
  // The stream keeps using it until its end, but no longer frees it.
  ownsWorkingFormat = 0;
  return workingFormat;
}

void LcUStreamReader::ReadDefinitions() {
  for (size_t i = 0; i < entryMap.size(); ++i)
    if (format->entries[i].baseEntry != LcUStreamFormatEntry::eROOT) entryMap[i] = -1;
  LcUStringA name;
  for (int32_t index = ReadInt32(); index != -1 && !error; index = ReadInt32()) {
    ReadString(name);
    int32_t base = ReadInt32();
    if (error || !Define(index, name.Get(), base)) return;
  }
}

bool LcUStreamReader::Define(int32_t index, const char* name, int32_t base) {
  if (index > kMaxDefinedIndex || base < 0 || index <= base || !name || !*name)
    return Fail(eBAD_DEFINITION, "Bad definition %d \"%s\" with base %d", index, name ? name : "", base);
  LcUStreamFormat* working = workingFormat;
  int32_t local = working->IsEntry(index) && working->entries[size_t(index)].name.Get() &&
                          std::strcmp(working->entries[size_t(index)].name.Get(), name) == 0
                      ? index
                      : working->FindEntry(name);
  bool added = local < 0;
  if (added) {
    if (!ownsWorkingFormat) {
      working = new LcUStreamFormat(*workingFormat);
      if (!working) return Fail(eBAD_DEFINITION, "Bad definition %d \"%s\" with base %d", index, name, base);
      workingFormat = working;
      ownsWorkingFormat = 1;
    }
    working->entries.emplace_back();
    local = int32_t(working->entries.size() - 1);
  }
  if (entryMap.size() <= size_t(index)) entryMap.resize(size_t(index) + 1, -1);
  int32_t mappedBase = entryMap[size_t(base)];
  if (entryMap[size_t(index)] != -1 || mappedBase == -1)
    return Fail(eDEFINITION_CONFLICT, "Definition %d \"%s\" conflicts with the format", index, name);
  entryMap[size_t(index)] = local;
  LcUStreamFormatEntry& entry = working->entries[size_t(local)];
  if (!added) {
    if (entry.baseEntry == mappedBase) return true;
    return Fail(eDEFINITION_CONFLICT, "Definition %d \"%s\" conflicts with the format", index, name);
  }
  entry.name.Assign(name);
  entry.baseEntry = mappedBase;
  entry.substitute = LcUStreamFormatEntry::eNO_BASE;
  // The nearest base that this format can make and read stands in for it.
  for (int32_t k = mappedBase; k >= 0; k = working->entries[size_t(k)].baseEntry) {
    const LcUStreamFormatEntry& candidate = working->entries[size_t(k)];
    if (candidate.substitute != LcUStreamFormatEntry::eSELF || !candidate.readObject || !candidate.createObject) continue;
    entry.writeObject = candidate.writeObject;
    entry.createObject = candidate.createObject;
    entry.readObject = candidate.readObject;
    entry.substitute = k;
    break;
  }
  return true;
}

int32_t LcUStreamReader::MappedEntry(int32_t fileEntry) const {
  if (fileEntry < 0 || size_t(fileEntry) >= entryMap.size()) return -1;
  return entryMap[size_t(fileEntry)];
}

bool LcUStreamReader::AddObject(void* object, int32_t entry) {
  return objects.Add(object, entry) || Fail(eCREATE_FAILED, "No memory for object %u", nextId - 1);
}

int32_t LcUStreamReader::ReadReference(uint32_t* id, int32_t* entry, bool lookedUp) {
  *id = 0;
  *entry = -1;
  if (debug) ExpectToken(eOBJECT, 0, false);
  if (error) return 0;
  bool first;
  if (ascii) {
    char word[eMAX_WORD + 1];
    if (ReadWord(word) == 0) return error ? 0 : (FailEnd(), 0);
    if (std::strcmp(word, "NULL_OBJECT") == 0) return 0;
    first = std::strcmp(word, "DEF") == 0;
    if (!first && std::strcmp(word, "USE") != 0) return FailMismatch(word, "Object!"), 0;
    int64_t value = 0;
    if (ReadWord(word) == 0 || !ParseDecimal(word, value)) {
      if (!error) FailMismatch(word, "Object!");
      return 0;
    }
    // Any number out of the table is a bad reference, and no first-time id.
    *id = value < 0 || value > 0xFFFFFFFFll ? 0 : uint32_t(value);
    if (first) {
      if (!workingFormat) return Fail(eNO_FORMAT, "No format for stream"), 0;
      if (ReadWord(word) == 0) return error ? 0 : (FailEnd(), 0);
      int32_t local = workingFormat->FindEntry(word);
      if (local < 0) {
        if (!ParseDecimal(word, value) || value < 0 || value > 0x7FFFFFFF)
          return FailMismatch("Bad definition format entry", "Object!"), 0;
        local = MappedEntry(int32_t(value));
        if (local < 0) return FailMismatch(word, "Entry!"), 0;
      }
      *entry = local;
      if (!ExpectText("{")) return 0;
    }
  } else {
    uint32_t word[2] = {0, 0};
    GetBinary(word, 1, eNAT32);
    if (error || word[0] == 0) return 0;
    first = word[0] != 1;
    if (first) {
      *id = word[0];
      int32_t fileEntry = 0;
      GetBinary(&fileEntry, 1, eINT32);
      if (error) return 0;
      if (!workingFormat) return Fail(eNO_FORMAT, "No format for stream"), 0;
      *entry = MappedEntry(fileEntry);
      if (*entry < 0) {
        char read[16];
        std::snprintf(read, sizeof read, "%d", fileEntry);
        return FailMismatch(read, "Entry!"), 0;
      }
    } else {
      GetBinary(id, 1, eNAT32);
      if (error) return 0;
    }
  }
  if (!first && lookedUp && (*id < 100 || *id >= nextId)) return FailMismatch("Bad reference id", "Object!"), 0;
  return first ? 2 : 1;
}

bool LcUStreamReader::TakeNextId(uint32_t id) {
  if (id == nextId) {
    ++nextId;
    return true;
  }
  char read[16], expected[16];
  std::snprintf(read, sizeof read, "%u", id);
  std::snprintf(expected, sizeof expected, "%u", nextId);
  FailMismatch(read, expected);
  return false;
}

void* LcUStreamReader::ReadFirstTime(uint32_t id, int32_t entry, int32_t* working, LcUStreamUnknownData** unknownData) {
  // Objects nest by recursion: a hostile stream must not exhaust the stack.
  if (depth >= eMAX_DEPTH) {
    FailMismatch("Nested too deep", "Object!");
    return nullptr;
  }
  if (!TakeNextId(id)) return nullptr;
  ++depth;
  void* object = ReadNewObject(entry, working, unknownData);
  --depth;
  return object;
}

void* LcUStreamReader::ReadNewObject(int32_t entry, int32_t* working, LcUStreamUnknownData** unknownData) {
  uint32_t id = nextId - 1;
  const LcUStreamFormatEntry& e = workingFormat->entries[size_t(entry)];
  if (e.substitute == LcUStreamFormatEntry::eNO_BASE) {
    Fail(eNO_BASE, "No known base for class \"%s\"", e.name.Get() ? e.name.Get() : "");
    return nullptr;
  }
  *working = e.substitute >= 0 ? e.substitute : entry;
  if (!e.createObject || !e.readObject) {
    Fail(eNO_ENTRY, "No method for entry %d in format for object", entry);
    return nullptr;
  }
  void* object = e.createObject(this, *working);
  if (!object) {
    Fail(eCREATE_FAILED, "Failed to create object %u", id);
    return nullptr;
  }
  // Recorded before its fields are read, so that cycles resolve.
  if (!AddObject(object, *working)) return nullptr;
  int32_t wasDebug = debug;
  if (e.baseEntry != LcUStreamFormatEntry::eROOT) debug = 1;
  if (!e.readObject(this, *working, object)) Fail(eREAD_OBJECT_FAILED, "Failed to read object %u", id);
  if (e.substitute == LcUStreamFormatEntry::eSELF) {
    if (debug) ExpectToken(eOBJECT_END_DEF, 0, false);
  } else if (!error) {
    // The base read what it knew; the rest is kept to be written again.
    LcUStreamBuffer buffer;
    LcUStreamWriter tail(&buffer, formatVersion);
    tail.format = workingFormat;
    tail.ascii = ascii;
    tail.doublePrecision = doublePrecision;
    tail.textEncoding = textEncoding;
    tail.debug = 1;
    tail.WriteBegin(false, false);
    // The tail keeps this stream's ids, so that its references stay true.
    uint32_t firstId = nextId;
    tail.nextId = firstId;
    LcUStreamCopy::CopyTokens(*this, tail, true);
    tail.WriteEnd();
    if (tail.error && !error) Fail(tail.error, "Unknown object data could not be kept");
    if (unknownData && !error) {
      // Kept in a block of its own size, not the buffer's growth block.
      LcUStreamBuffer exact;
      uint32_t size = buffer.GetSize();
      if (size) exact.SetData(buffer.GetData(), size, 1);
      const uint8_t* data = size ? exact.GetData() : nullptr;
      void* block = exact.Detach();
      LcUStreamUnknownData* kept = new LcUStreamUnknownData(entry, block, data, size);
      if (!kept) {
        LcUMemory::MallocFree(block);
      } else {
        kept->ascii = ascii;
        kept->doublePrecision = doublePrecision;
        kept->textEncoding = textEncoding;
        kept->firstId = firstId;
      }
      *unknownData = kept;
    }
  }
  debug = wasDebug;
  if (ascii) ExpectText("}");
  return error ? nullptr : object;
}

void* LcUStreamReader::ReadAnyObject(int32_t* entry, LcUStreamUnknownData** unknownData) {
  if (entry) *entry = -1;
  if (unknownData) *unknownData = nullptr;
  uint32_t id;
  int32_t fileEntry;
  int32_t kind = ReadReference(&id, &fileEntry);
  if (kind == 0) return nullptr;
  if (kind == 1) {
    const LcUStreamObjectList::Row& row = objects[id - 100];
    if (entry) *entry = row.entry;
    return row.object;
  }
  int32_t working = -1;
  void* object = ReadFirstTime(id, fileEntry, &working, unknownData);
  if (entry) *entry = object ? working : -1;
  return object;
}

void* LcUStreamReader::ReadObject(int32_t expectedEntry) {
  int32_t entry;
  void* object = ReadAnyObject(&entry, nullptr);
  if (!object || entry == expectedEntry) return object;
  Fail(eWRONG_ENTRY, "Object has entry %d, expected %d", entry, expectedEntry);
  return nullptr;
}

bool LcUStreamReader::ReadKnownId(uint32_t id, void* object, int32_t entry) {
  return !error && TakeNextId(id) && AddObject(object, entry);
}
