#include "filestream/LcUAsyncOpenAction.h"

#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"

void LcUAsyncOpenAction::Execute(int32_t) {
  file->openFailed = !engine->OpenInto(file, share);
}

bool LcUAsyncOpenAction::Finish() {
  engine->FinishOpen(this);
  return true;
}
