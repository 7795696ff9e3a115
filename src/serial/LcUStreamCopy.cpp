#include "serial/LcUStreamCopy.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "foundation/LcUMemory.h"
#include "serial/LcUStreamFormat.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamTypes.h"
#include "serial/LcUStreamWriter.h"

namespace {
// A hostile count must not become a huge temporary.
constexpr uint32_t kMaxCopiedElements = 0x1000000;
constexpr uint32_t kMaxTokenWord = 24;

int32_t ScalarOf(int32_t arrayCode) {
  switch (arrayCode) {
    case LcUStream::eNAT8_ARRAY: return LcUStream::eNAT8;
    case LcUStream::eINT16_ARRAY: return LcUStream::eINT16;
    case LcUStream::eNAT16_ARRAY: return LcUStream::eNAT16;
    case LcUStream::eINT32_ARRAY: return LcUStream::eINT32;
    case LcUStream::eNAT32_ARRAY: return LcUStream::eNAT32;
    case LcUStream::eSINGLE_ARRAY: return LcUStream::eSINGLE;
    case LcUStream::eDOUBLE_ARRAY: return LcUStream::eDOUBLE;
    case LcUStream::eFLOAT_ARRAY: return LcUStream::eFLOAT;
    default: return LcUStream::eNAT64;
  }
}
}  // namespace

int32_t LcUStreamCopy::ReadToken(LcUStreamReader& reader) {
  if (!reader.ascii) {
    int32_t code = 0;
    reader.GetBinary(&code, 1, LcUStream::eINT32);
    return code;
  }
  char word[LcUStream::eMAX_WORD + 1];
  if (reader.ReadWord(word) == 0) {
    if (!reader.error) reader.FailEnd();
    return LcUStream::eTYPE_COUNT;
  }
  if (std::strlen(word) <= kMaxTokenWord)
    for (int32_t code = 0; code < LcUStream::eTYPE_COUNT; ++code)
      if (std::strcmp(word, LcUStream::TypeName(code)) == 0) return code;
  return LcUStream::eTYPE_COUNT;
}

void LcUStreamCopy::CopyValue(LcUStreamReader& r, LcUStreamWriter& w, int32_t code) {
  switch (code) {
    case LcUStream::eNAT8: w.WriteNat8(r.ReadNat8()); break;
    case LcUStream::eINT16: w.WriteInt16(r.ReadInt16()); break;
    case LcUStream::eNAT16: w.WriteNat16(r.ReadNat16()); break;
    case LcUStream::eINT32: w.WriteInt32(r.ReadInt32()); break;
    case LcUStream::eNAT32: w.WriteNat32(r.ReadNat32()); break;
    case LcUStream::eSINGLE: w.WriteSingle(r.ReadSingle()); break;
    case LcUStream::eDOUBLE: w.WriteDouble(r.ReadDouble()); break;
    case LcUStream::eFLOAT: w.WriteFloat(r.ReadFloat()); break;
    case LcUStream::eBOOLEAN: w.WriteBoolean(r.ReadBoolean()); break;
    case LcUStream::eENUM: w.WriteEnum(r.ReadEnum()); break;
    case LcUStream::eBITFIELD: w.WriteBitfield(r.ReadBitfield()); break;
    case LcUStream::eNAT64: w.WriteNat64(r.ReadNat64()); break;
    case LcUStream::eSTRING: {
      LcUStringA text;
      if (r.ReadString(text)) w.WriteString(text.Get(), text.Get() ? text.Length() : -1);
      break;
    }
    default: CopyArray(r, w, code); break;
  }
}

void LcUStreamCopy::CopyArray(LcUStreamReader& r, LcUStreamWriter& w, int32_t code) {
  int32_t count = 0;
  char word[LcUStream::eMAX_WORD + 1];
  if (r.ascii) {
    if (r.ReadWord(word) == 0) {
      if (!r.error) r.FailEnd();
      return;
    }
    count = std::atoi(word);
  } else {
    r.GetBinary(&count, 1, LcUStream::eINT32);
    std::snprintf(word, sizeof word, "%d", count);
  }
  if (r.error) return;
  if (count < 1 || uint32_t(count) > kMaxCopiedElements) {
    r.FailMismatch(word, "Array count!");
    return;
  }
  int32_t scalar = ScalarOf(code);
  uint64_t bytes = uint64_t(count) * LcUStreamTypes::MemorySize(scalar);
  void* values = LcUMemory::Alloc(bytes, 8, 1);
  if (!values) {
    r.FailMismatch(word, "Array count!");
    return;
  }
  uint32_t n = uint32_t(count);
  switch (scalar) {
    case LcUStream::eNAT8: if (r.ReadNat8Array(static_cast<uint8_t*>(values), n)) w.WriteNat8Array(static_cast<uint8_t*>(values), n); break;
    case LcUStream::eINT16: if (r.ReadInt16Array(static_cast<int16_t*>(values), n)) w.WriteInt16Array(static_cast<int16_t*>(values), n); break;
    case LcUStream::eNAT16: if (r.ReadNat16Array(static_cast<uint16_t*>(values), n)) w.WriteNat16Array(static_cast<uint16_t*>(values), n); break;
    case LcUStream::eINT32: if (r.ReadInt32Array(static_cast<int32_t*>(values), n)) w.WriteInt32Array(static_cast<int32_t*>(values), n); break;
    case LcUStream::eNAT32: if (r.ReadNat32Array(static_cast<uint32_t*>(values), n)) w.WriteNat32Array(static_cast<uint32_t*>(values), n); break;
    case LcUStream::eSINGLE: if (r.ReadSingleArray(static_cast<float*>(values), n)) w.WriteSingleArray(static_cast<float*>(values), n); break;
    case LcUStream::eDOUBLE: if (r.ReadDoubleArray(static_cast<double*>(values), n)) w.WriteDoubleArray(static_cast<double*>(values), n); break;
    case LcUStream::eFLOAT: if (r.ReadFloatArray(static_cast<double*>(values), n)) w.WriteFloatArray(static_cast<double*>(values), n); break;
    default: if (r.ReadNat64Array(static_cast<uint64_t*>(values), n)) w.WriteNat64Array(static_cast<uint64_t*>(values), n); break;
  }
  LcUMemory::Free(values, bytes, 8);
}

void LcUStreamCopy::CopyTokens(LcUStreamReader& r, LcUStreamWriter& w, bool stopAtClose) {
  // Objects defined in what is copied are renumbered to the target;
  // references to earlier ones pass as they are.
  uint32_t start = r.nextId;
  int64_t shift = int64_t(w.nextId) - int64_t(r.nextId);
  int32_t depth = 0;
  while (!r.error && !w.error) {
    int32_t code = ReadToken(r);
    if (r.error) return;
    if (code <= LcUStream::eBAD || code >= LcUStream::eTYPE_COUNT || (code == LcUStream::eSYNC && stopAtClose) ||
        (code == LcUStream::eOBJECT_END_DEF && depth == 0 && !stopAtClose)) {
      char read[16];
      std::snprintf(read, sizeof read, "%d", code);
      r.FailMismatch(read, "Debug Token!");
      return;
    }
    if (code == LcUStream::eSYNC) {
      // The rest of the reader's Sync, after its token.
      int32_t wasDebug = r.debug;
      r.debug = 0;
      r.Sync();
      r.debug = wasDebug;
      return;
    }
    if (code == LcUStream::eOBJECT_END_DEF) {
      if (depth == 0) return;
      --depth;
      if (r.ascii) r.ExpectText("}");
      w.WriteObjectClose();
      continue;
    }
    r.debug = 0;
    if (code == LcUStream::eOBJECT) {
      uint32_t id;
      int32_t entry;
      int32_t kind = r.ReadReference(&id, &entry, false);
      if (kind == 0 && !r.error) {
        w.WriteNullObject();
      } else if (kind == 1) {
        w.WriteObjectUse(id >= start ? uint32_t(int64_t(id) + shift) : id);
      } else if (kind == 2 && id != r.nextId) {
        r.Fail(LcUStream::eID_OUT_OF_ORDER, "Object id %u out of order, expected %u", id, r.nextId);
      } else if (kind == 2) {
        ++r.nextId;
        r.AddObject(nullptr, -1);
        const LcUStreamFormatEntry& e = r.workingFormat->entries[size_t(entry)];
        w.WriteObjectDef(w.nextId++, entry, e.name.Get());
        ++depth;
      }
    } else {
      CopyValue(r, w, code);
    }
    r.debug = 1;
  }
}

void LcUStreamCopy::Copy(LcUStreamReader& reader, LcUStreamWriter& writer) {
  if (!reader.debug || !writer.debug) return;
  CopyTokens(reader, writer, false);
  reader.ReadEnd(false);
}
