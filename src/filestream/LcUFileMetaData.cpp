#include "filestream/LcUFileMetaData.h"

void LcUFileMetaData::SetModificationTime(int64_t value) {
  modificationTime = value;
  mask |= eMODIFICATION_TIME;
}

void LcUFileMetaData::SetRevisionId(const char16_t* value) {
  revisionId.Assign(value);
  mask |= eREVISION_ID;
}

void LcUFileMetaData::SetFileSize(uint64_t value) {
  fileSize = value;
  mask |= eFILE_SIZE;
}

void LcUFileMetaData::SetPermissions(uint32_t value) {
  permissions = value;
  mask |= ePERMISSIONS;
}

void LcUFileMetaData::Clear() {
  mask = 0;
  modificationTime = 0;
  fileSize = 0;
  revisionId.Free();
  permissions = 0;
}

bool LcUFileMetaData::operator==(const LcUFileMetaData& other) const {
  uint32_t both = mask & other.mask;
  if ((both & eFILE_SIZE) && fileSize != other.fileSize) return false;
  if (both & eREVISION_ID) return revisionId == other.revisionId;
  if (both & eMODIFICATION_TIME) return modificationTime == other.modificationTime;
  return false;
}
