#pragma once
#include <cstdint>
#include "foundation/LcUString.h"

class LcUJsonStream;

// What a location reports about a file; a value counts only where its
// bit in the mask is set.
class LcUFileMetaData {
public:
  enum : uint32_t {
    eMODIFICATION_TIME = 1,
    eREVISION_ID = 2,
    eFILE_SIZE = 4,
    ePERMISSIONS = 8,
  };
  enum : uint32_t { ePERMISSION_WRITABLE = 128 };

  uint32_t GetMask() const { return mask; }
  bool Has(uint32_t bit) const { return (mask & bit) != 0; }
  // Seconds since 1970 until the clocks of the environment take over.
  int64_t GetModificationTime() const { return modificationTime; }
  const LcUString& GetRevisionId() const { return revisionId; }
  uint64_t GetFileSize() const { return fileSize; }
  uint32_t GetPermissions() const { return permissions; }
  void SetModificationTime(int64_t value);
  void SetRevisionId(const char16_t* value);
  void SetFileSize(uint64_t value);
  void SetPermissions(uint32_t value);
  void Clear();

  // Whether a cached copy described by one matches the other: sizes that
  // differ part them, then revision ids decide, then times.
  bool operator==(const LcUFileMetaData& other) const;
  bool operator!=(const LcUFileMetaData& other) const { return !(*this == other); }

  // One object with the present values only.
  void Save(LcUJsonStream& stream) const;
  // A value of the wrong type stays absent; false when the stream failed.
  bool Load(LcUJsonStream& stream);

private:
  uint32_t mask = 0;
  int64_t modificationTime = 0;
  LcUString revisionId;
  uint64_t fileSize = 0;
  uint32_t permissions = 0;
};
