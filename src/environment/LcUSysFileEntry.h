#pragma once
#include <cstdint>

#include "foundation/LcUString.h"

// One entry of a folder listing, counted so that it can outlive the
// iterator that found it.
class LcUSysFileEntry {
public:
  enum { eATTRIBUTE_READONLY = 1, eATTRIBUTE_DIRECTORY = 16, eATTRIBUTE_REPARSE_POINT = 1024 };

  LcUSysFileEntry(const LcUString& folder, LcUString& name, uint32_t attributes);
  LcUSysFileEntry(const LcUSysFileEntry&) = delete;
  LcUSysFileEntry& operator=(const LcUSysFileEntry&) = delete;

  void AddRef() { ++references; }
  void Release();

  const LcUString& GetFolder() const { return folder; }
  const LcUString& GetName() const { return name; }
  uint32_t GetAttributes() const { return attributes; }
  bool IsDirectory() const { return (attributes & eATTRIBUTE_DIRECTORY) != 0; }
  // A symbolic link or junction, whatever it points at.
  bool IsLink() const { return (attributes & eATTRIBUTE_REPARSE_POINT) != 0; }

private:
  ~LcUSysFileEntry() = default;

  LcUString folder;
  LcUString name;
  uint32_t attributes;
  int32_t references = 1;
};
