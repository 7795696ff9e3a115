#pragma once
#include <cstdint>
#include <optional>

#include "environment/LcUSysFileIterator.h"
#include "foundation/LcUString.h"
#include "foundation/LcUStringSet.h"

// The files of one section (a subfolder name) across the search
// directories that mask selects; a name is given once, from the lowest index.
class LcUResourceSectionHandle {
public:
  LcUResourceSectionHandle(const char16_t* section, uint32_t mask);
  ~LcUResourceSectionHandle();
  LcUResourceSectionHandle(const LcUResourceSectionHandle&) = delete;
  LcUResourceSectionHandle& operator=(const LcUResourceSectionHandle&) = delete;

  bool Next();
  bool IsValid() const { return entry != nullptr; }
  void GetPath(LcUString& out) const;

private:
  int32_t dirIndex = -1;
  std::optional<LcUSysFileIterator> directory;
  LcUSysFileEntry* entry = nullptr;
  LcUString section;
  uint32_t mask;
  LcUStringSet seen;
  bool justOpened = false;
};
