#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamCopy.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamText.h"
#include "serial/LcUStreamUnknownData.h"
#include "serial/LcUStreamWriter.h"

void LcUStreamWriter::WriteDefinitions(bool derived) {
  if (derived) {
    for (size_t i = 0; i < format->entries.size(); ++i) {
      const LcUStreamFormatEntry& entry = format->entries[i];
      if (entry.baseEntry < 0) continue;
      WriteInt32(int32_t(i));
      WriteString(entry.name.Get());
      WriteInt32(entry.baseEntry);
    }
  }
  WriteInt32(-1);
}

void LcUStreamWriter::WriteNullObject() {
  if (debug) WriteToken(eOBJECT, 0, false);
  if (!ascii) {
    PutRaw32(0);
    return;
  }
  WriteIndent();
  WriteText("NULL_OBJECT\n", 12);
}

void LcUStreamWriter::WriteObjectUse(uint32_t id) {
  if (debug) WriteToken(eOBJECT, 0, false);
  if (!ascii) {
    uint32_t words[2] = {1, id};
    PutBinary(words, 2, eNAT32);
    return;
  }
  char text[24];
  WriteIndent();
  WriteText("USE", 3);
  uint32_t length = LcUStreamText::FormatSigned(text, id, 0);
  text[length++] = '\n';
  WriteText(text, length);
}

void LcUStreamWriter::WriteObjectDef(uint32_t id, int32_t entry, const char* name) {
  if (debug) WriteToken(eOBJECT, 0, false);
  if (!ascii) {
    uint32_t words[2] = {id, uint32_t(entry)};
    PutBinary(words, 2, eNAT32);
  } else {
    char text[24];
    WriteIndent();
    WriteText("DEF", 3);
    uint32_t length = LcUStreamText::FormatSigned(text, id, 0);
    text[length++] = ' ';
    WriteText(text, length);
    if (name && *name) {
      WriteText(name, uint32_t(std::strlen(name)));
    } else {
      length = LcUStreamText::FormatSigned(text, entry, 0);
      WriteText(text + 1, length - 1);
    }
    WriteText("\n", 1);
    WriteIndent();
    WriteText("{\n", 2);
  }
  indent += 2;
}

void LcUStreamWriter::WriteObjectClose() {
  indent -= 2;
  if (debug) WriteToken(eOBJECT_END_DEF, 0, false);
  if (ascii) {
    WriteIndent();
    WriteText("}\n", 2);
  }
}

uint32_t LcUStreamWriter::WriteKnownId(const void* object, int32_t entry) {
  if (error) return 0;
  if (!format) return Fail(eNO_FORMAT, "No format for stream");
  if (!format->IsEntry(entry)) return Fail(eNO_ENTRY, "No entry %d in format for object", entry);
  bool added;
  uint32_t id = objectIds.Insert(object, nextId, added);
  if (!id) return Fail(eWRITE_OBJECT_FAILED, "No memory for object ids");
  if (added) ++nextId;
  return id;
}

uint32_t LcUStreamWriter::WriteObject(const void* object, int32_t entry, const LcUStreamUnknownData* unknownData) {
  if (error) return 0;
  if (!object) {
    WriteNullObject();
    return 0;
  }
  if (!format) return Fail(eNO_FORMAT, "No format for stream");
  if (!format->IsEntry(entry)) return Fail(eNO_ENTRY, "No entry %d in format for object", entry);
  const LcUStreamFormatEntry& given = format->entries[size_t(entry)];
  if (!given.writeObject) return Fail(eNO_ENTRY, "No method for entry %d in format for object", entry);
  int32_t recorded = entry;
  if (unknownData) {
    recorded = unknownData->entry;
    if (!format->IsEntry(recorded)) return Fail(eNO_ENTRY, "No entry %d in format for object", recorded);
    const LcUStreamFormatEntry& tail = format->entries[size_t(recorded)];
    if (!tail.writeObject || tail.baseEntry == LcUStreamFormatEntry::eEMPTY)
      return Fail(eNO_ENTRY, "No method for entry %d in format for object", recorded);
  }
  bool added;
  uint32_t id = objectIds.Insert(object, nextId, added);
  if (!id) return Fail(eWRITE_OBJECT_FAILED, "No memory for object ids");
  if (!added) {
    WriteObjectUse(id);
    return id;
  }
  ++nextId;
  WriteObjectDef(id, recorded, format->entries[size_t(recorded)].name.Get());
  int32_t wasDebug = debug;
  // Derived classes are always self-describing, so that a reader that does
  // not know them can skip them.
  if (recorded != entry || given.baseEntry != LcUStreamFormatEntry::eROOT) debug = 1;
  if (!given.writeObject(this, entry, const_cast<void*>(object))) Fail(eWRITE_OBJECT_FAILED, "Failed to write object %u", id);
  if (unknownData && unknownData->size > 0 && !error) {
    LcUStreamBuffer buffer;
    buffer.SetData(unknownData->data, unknownData->size);
    LcUStreamReader tail(&buffer, formatVersion);
    tail.format = format;
    tail.ascii = unknownData->ascii;
    tail.doublePrecision = unknownData->doublePrecision;
    tail.textEncoding = unknownData->textEncoding;
    tail.debug = 1;
    if (tail.ReadBegin(false, false)) {
      tail.nextId = unknownData->firstId;
      LcUStreamCopy::CopyTokens(tail, *this, false);
    }
    tail.ReadEnd(false);
    if (tail.error && !error) Fail(tail.error, "Unknown object data could not be written");
  }
  WriteObjectClose();
  debug = wasDebug;
  return id;
}
