#include "filestream/LcUStreamFileURLHandle.h"

#include <algorithm>

#include "filestream/LcUFileURLFile.h"
#include "filestream/LcUFileURLImpl.h"

LcUStreamFileURLHandle::LcUStreamFileURLHandle(LcUFileURLFile* fileURL, uint64_t length)
    : LcUStreamBlockSink(eDEFAULT_BLOCK_SIZE, 0), fileURL(fileURL), length(length) {}

int32_t LcUStreamFileURLHandle::ReadBlock(uint8_t* data, uint32_t* count) {
  uint64_t end = length ? length : fileURL->GetSize();
  uint64_t left = end > position ? end - position : 0;
  *count = 0;
  uint32_t size = uint32_t(std::min<uint64_t>(left, eDEFAULT_BLOCK_SIZE));
  int32_t result = fileURL->engine->Read(fileURL, LcUFileURLImpl::eBLOCKING, position, data, size);
  if (result != LcUFileURLImpl::eDONE) return result;
  *count = size;
  position += size;
  return 0;
}

bool LcUStreamFileURLHandle::WriteBlock(const uint8_t* data, uint32_t count) {
  if (fileURL->engine->Write(fileURL, LcUFileURLImpl::eBLOCKING, position, data, count) != LcUFileURLImpl::eDONE)
    return false;
  position += count;
  return true;
}

bool LcUStreamFileURLHandle::Flush() {
  uint32_t size = 0;
  uint8_t* pending = TakePending(&size);
  return !pending || WriteBlock(pending, size);
}
