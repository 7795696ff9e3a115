#include "filestream/LcUSysFilePosition.h"

#include <sys/types.h>

bool LcUSysFilePosition::Seek(FILE* stream, int64_t offset) {
  return offset >= 0 && fseeko(stream, off_t(offset), SEEK_SET) == 0;
}
