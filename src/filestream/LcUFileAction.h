#pragma once
#include <cstdint>

#include "foundation/LcUAction.h"

class LcUFileURLImpl;
struct LcUFileURLBlock;

// Reads or writes one block of a file's local copy, as the block's state
// says; it goes back to the engine's pool when finished.
class LcUFileAction : public LcUAction {
public:
  explicit LcUFileAction(LcUFileURLImpl* engine) : engine(engine) {}
  void Execute(int32_t threadIndex) override;
  bool Finish() override;

  LcUFileURLImpl* engine;
  LcUFileURLBlock* block = nullptr;
  uint32_t slot = 0;
  uint32_t error = 0;
};
