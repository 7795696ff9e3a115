#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUStringA.h"

class LcUStreamFormat;
class LcUStreamReader;
class LcUStreamWriter;

// 0 from a write or read means failure; a create may answer null.
typedef int32_t (*LcUStreamWriteObjectFunction)(LcUStreamWriter* writer, int32_t entry, void* object);
typedef void* (*LcUStreamCreateObjectFunction)(LcUStreamReader* reader, int32_t entry);
typedef int32_t (*LcUStreamReadObjectFunction)(LcUStreamReader* reader, int32_t entry, void* object);
typedef void (*LcUStreamFixUpFunction)(LcUStreamReader* reader, int32_t entry, void* object);
// Non-zero when the format accepts a header word; it may set the version from it.
typedef int32_t (*LcUStreamMatchNameFunction)(const LcUStreamFormat* format, const char* word, uint32_t* version);

// One class of a format.
struct LcUStreamFormatEntry {
  enum : int32_t { eROOT = -1, eNO_BASE = -2, eEMPTY = -3, eSELF = -1 };

  LcUStreamWriteObjectFunction writeObject = nullptr;
  LcUStreamCreateObjectFunction createObject = nullptr;
  LcUStreamReadObjectFunction readObject = nullptr;
  LcUStreamFixUpFunction fixUp = nullptr;
  LcUStringA name;
  // eROOT, a base entry's index, or eEMPTY for a slot not yet set.
  int32_t baseEntry = eEMPTY;
  // eSELF; for an entry added from a file, the nearest usable base, or eNO_BASE.
  int32_t substitute = eSELF;
};

// The table of classes an object stream writes and reads. Shared and
// read-only while streams use it: a reader that must extend it works on a copy.
class LcUStreamFormat : public LcUDeletable {
public:
  LcUStreamFormat(const char* name, uint32_t version);
  LcUStreamFormat(const LcUStreamFormat& other) = default;

  // Grows the table as needed; false for a negative index or a base that is
  // not an earlier entry.
  bool SetEntry(int32_t index, LcUStreamWriteObjectFunction write, LcUStreamCreateObjectFunction create,
                LcUStreamReadObjectFunction read, const char* name, int32_t base);
  void SetFixUp(int32_t index, LcUStreamFixUpFunction fixUp);
  // -1 when no entry has that name.
  int32_t FindEntry(const char* name) const;
  bool IsEntry(int32_t index) const { return index >= 0 && size_t(index) < entries.size(); }

  LcUStringA name;
  uint32_t version;
  LcUStreamMatchNameFunction matchName = nullptr;
  uint8_t writeDefinitions = 0;
  std::vector<LcUStreamFormatEntry, LcUAllocator<LcUStreamFormatEntry>> entries;
};
