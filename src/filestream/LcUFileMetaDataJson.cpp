#include "filestream/LcUFileMetaData.h"
#include "serial/LcUJsonStream.h"

namespace {
const char kTimeKey[] = "ModificationTime";
const char kRevisionKey[] = "RevisionId";
const char kSizeKey[] = "FileSize";
const char kPermissionsKey[] = "Permissions";
}  // namespace

void LcUFileMetaData::Save(LcUJsonStream& stream) const {
  stream.BeginObject();
  if (Has(eMODIFICATION_TIME)) {
    stream.SetKey(kTimeKey);
    stream.WriteInt64Text(modificationTime);
  }
  if (Has(eREVISION_ID)) {
    stream.SetKey(kRevisionKey);
    stream.WriteWideText(revisionId.Get());
  }
  if (Has(eFILE_SIZE)) {
    stream.SetKey(kSizeKey);
    stream.WriteUInt64Text(fileSize);
  }
  if (Has(ePERMISSIONS)) {
    stream.SetKey(kPermissionsKey);
    stream.WriteInt32(int32_t(permissions));
  }
  stream.LeaveObject();
}

bool LcUFileMetaData::Load(LcUJsonStream& stream) {
  Clear();
  if (!stream.EnterObject()) return false;
  if (stream.FindKey(kTimeKey)) {
    int64_t value = stream.ReadInt64Text();
    if (!stream.Failed()) SetModificationTime(value);
  }
  if (stream.FindKey(kRevisionKey)) {
    LcUString value;
    if (stream.ReadWideText(value) && !stream.Failed()) SetRevisionId(value.Get());
  }
  if (stream.FindKey(kSizeKey)) {
    uint64_t value = stream.ReadUInt64Text();
    if (!stream.Failed()) SetFileSize(value);
  }
  if (stream.FindKey(kPermissionsKey)) {
    int32_t value = stream.ReadInt32();
    if (!stream.Failed()) SetPermissions(uint32_t(value));
  }
  stream.GuardedLeaveObject();
  return !stream.Failed();
}
