#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "serial/LcUStreamReader.h"
#include "serial/LcUStreamWriter.h"

namespace {
// Sets nest no deeper than this when read; a deeper one ends the read.
constexpr int32_t kMaxDepth = 64;

LcUExOptionSet* ReadSet(LcUStreamReader& stream, int32_t depth) {
  uint32_t flags = stream.ReadNat32();
  if (stream.GetError() || (flags & LcUOptionSet::eTRANSIENT) || depth > kMaxDepth) return nullptr;
  int32_t count = stream.ReadInt32();
  LcUExOptionSet* set = new LcUExOptionSet(flags);
  if (!set) return nullptr;
  // The count is trusted for nothing but the loop: each record must still
  // come from the stream.
  for (int32_t i = 0; i < count && !stream.GetError(); ++i) {
    LcUOptionRecord* record = new LcUOptionRecord;
    if (!record) break;
    stream.ReadString(record->name);
    record->value.ReadBinary(stream);
    if (!stream.GetError() && record->value.IsEmpty()) {
      LcUExOptionSet* child = ReadSet(stream, depth + 1);
      if (!child) {
        delete record;
        continue;
      }
      record->SetChild(child);
    }
    if (stream.GetError()) {
      delete record;
      break;
    }
    set->AddRecord(record);
  }
  return set;
}
}  // namespace

void LcUOption::WriteToStream(LcUOptionSet* set, LcUStreamWriter& stream) {
  uint32_t flags = set->GetFlags() & ~uint32_t(LcUOptionSet::eALWAYS_VISIBLE);
  stream.WriteNat32(flags);
  if (flags & LcUOptionSet::eTRANSIENT) return;
  stream.WriteInt32(set->GetCount());
  for (int32_t i = 0; i < set->GetCount(); ++i) {
    stream.WriteString(set->GetName(i));
    LcUData value;
    LcUOptionSet* child = set->GetValue(i, &value);
    value.WriteBinary(stream);
    if (child) WriteToStream(child, stream);
  }
}

LcUExOptionSet* LcUOption::ReadFromStream(LcUStreamReader& stream) {
  return ReadSet(stream, 0);
}
