#include "filestream/LcUSysFilePosition.h"

bool LcUSysFilePosition::Seek(FILE* stream, int64_t offset) {
  return offset >= 0 && _fseeki64(stream, offset, SEEK_SET) == 0;
}
