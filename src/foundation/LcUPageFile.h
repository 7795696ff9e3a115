#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"

class LcUPageOutProgress;

// Pages held by number from 1, loaded on demand after a page-out has made
// room for them.
class LcUPageFile : public LcUDeletable {
public:
  ~LcUPageFile() override;

  // The stored page with status 0, else one loaded after a page-out
  // (skipped in pass 5).
  void* GetPage(uint32_t pageNumber, void* argument, int32_t& status, int32_t pass, LcUPageOutProgress* progress);
  void* PeekPage(uint32_t pageNumber) const;
  // Grows as needed; replacing a page by null drops it.
  bool SetPage(uint32_t pageNumber, void* page);

protected:
  virtual void* LoadPage(uint32_t pageNumber, void* argument, int32_t& status) = 0;
  // Told when a page goes; `argument` is 0xFFFFFFFF.
  virtual void DropPage(uint32_t pageNumber, uint32_t argument) = 0;

private:
  void** pages = nullptr;
  uint32_t count = 0;
};
