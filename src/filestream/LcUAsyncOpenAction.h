#pragma once
#include <cstdint>

#include "foundation/LcUAction.h"

class LcUFileURLImpl;
class LcUFileURLFile;

// Opens one file on an open-queue worker; a Close while it runs only marks
// it cancelled, and Finish destroys the file then.
class LcUAsyncOpenAction : public LcUAction {
public:
  LcUAsyncOpenAction(LcUFileURLImpl* engine, LcUFileURLFile* file, int32_t share)
      : engine(engine), file(file), share(share) {}
  void Execute(int32_t threadIndex) override;
  bool Finish() override;

  LcUFileURLImpl* engine;
  LcUFileURLFile* file;
  int32_t share;
  bool cancelled = false;
};
