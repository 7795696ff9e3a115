#pragma once
#include <cstdint>

#include "environment/LcUSysFileEntry.h"
#include "foundation/LcUString.h"

// Lists one folder, without "." and "..". Valid while it stands on an entry.
class LcUSysFileIterator {
public:
  explicit LcUSysFileIterator(const char16_t* folder);
  ~LcUSysFileIterator();
  LcUSysFileIterator(const LcUSysFileIterator&) = delete;
  LcUSysFileIterator& operator=(const LcUSysFileIterator&) = delete;

  bool IsValid() const { return entry != nullptr; }
  // False, and invalid, at the end.
  bool Next();
  // The caller releases the entry it is given.
  LcUSysFileEntry* GetEntry();
  void GetName(LcUString& out) const;
  void GetPath(LcUString& out) const;
  bool IsDirectory() const { return entry && entry->IsDirectory(); }
  bool IsLink() const { return entry && entry->IsLink(); }

private:
  // The system's next entry, whatever its name; false at the end.
  bool Step(LcUString& name, uint32_t& attributes);
  void CloseFind();

  LcUString folder;
  LcUSysFileEntry* entry = nullptr;
  void* find = nullptr;
  bool done = false;
};
