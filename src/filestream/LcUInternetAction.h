#pragma once
#include <cstdint>

#include "foundation/LcUAction.h"

class LcUFileURLImpl;
struct LcUFileURLBlock;

// Downloads a run of neighbouring blocks of one remote file in one ranged
// request; it goes back to the engine's pool when finished.
class LcUInternetAction : public LcUAction {
public:
  enum : uint32_t { eMAX_BLOCKS = 16 };

  explicit LcUInternetAction(LcUFileURLImpl* engine) : engine(engine) {}
  void Execute(int32_t threadIndex) override;
  bool Finish() override;

  LcUFileURLImpl* engine;
  LcUFileURLBlock* blocks[eMAX_BLOCKS] = {};
  uint32_t count = 0;
  void* request = nullptr;
  bool error = false;
};
