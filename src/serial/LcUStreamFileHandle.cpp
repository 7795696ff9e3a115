#include "serial/LcUStreamFileHandle.h"

#include <cerrno>

#include "foundation/LcUError.h"

LcUStreamFileHandle::LcUStreamFileHandle(FILE* file)
    : LcUStreamBlockSink(eDEFAULT_BLOCK_SIZE, 0), file(file) {}

bool LcUStreamFileHandle::WriteBlock(const uint8_t* data, uint32_t count) {
  size_t written = std::fwrite(data, 1, count, file);
  if (written == count) return true;
  LcUError::PostF(LcUError::eWARNING, &component, "WriteBlock: fwrite(%d) returned %d, ferror %d, last error %d",
                  int(count), int(written), std::ferror(file), errno);
  return false;
}

int32_t LcUStreamFileHandle::ReadBlock(uint8_t* data, uint32_t* count) {
  uint64_t room = RegionRounded(blockSize);
  *count = uint32_t(std::fread(data, 1, room < eDEFAULT_BLOCK_SIZE ? size_t(room) : size_t(eDEFAULT_BLOCK_SIZE), file));
  return 0;
}

bool LcUStreamFileHandle::Flush() {
  bool ok = true;
  uint32_t size;
  if (uint8_t* pending = TakePending(&size)) {
    size_t written = std::fwrite(pending, 1, size, file);
    if (written != size) {
      LcUError::PostF(LcUError::eWARNING, &component, "WriteFlush: fwrite(%d) returned %d, ferror %d, last error %d",
                      int(size), int(written), std::ferror(file), errno);
      ok = false;
    }
  }
  if (std::fflush(file) != 0) {
    LcUError::PostF(LcUError::eWARNING, &component, "WriteFlush: fflush failed");
    ok = false;
  }
  return ok;
}
