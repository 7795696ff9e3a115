#include "environment/LcUSysFileHandle.h"

bool LcUSysFileHandle::Close() {
  if (!stream) return true;
  FILE* closing = stream;
  stream = nullptr;
  return std::fclose(closing) == 0;
}
