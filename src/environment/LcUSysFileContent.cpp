
#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "environment/LcUSysNativeFile.h"
#include "foundation/LcUChecksum.h"

namespace {
const int kReadWrite = LcUSysFileHandle::eACCESS_READ_WRITE;
const int kWrite = LcUSysFileHandle::eACCESS_WRITE;
}  // namespace

bool LcUSysFile::Truncate(const char16_t* path, int64_t size) {
  LcUSysNativeFile file;
  return file.Open(path, kReadWrite, LcUSysFileHandle::eCREATE_NEW, 0, 0, size) && file.Close();
}

bool LcUSysFile::Fill(const char16_t* path, int64_t size) {
  if (!Truncate(path, size)) return false;
  LcUSysFileHandle file;
  if (!file.Open(path, kWrite, LcUSysFileHandle::eOPEN_EXISTING, LcUSysFileHandle::eMODE_BINARY,
                 LcUSysFileHandle::eDENY_WRITE, 0, LcUSysFileHandle::ePERMISSION_READ | LcUSysFileHandle::ePERMISSION_WRITE))
    return false;
  static const char zeros[8192] = {};
  for (int64_t left = size; left > 0; left -= int64_t(sizeof zeros)) {
    size_t n = left < int64_t(sizeof zeros) ? size_t(left) : sizeof zeros;
    if (std::fwrite(zeros, 1, n, file.GetStream()) != n) return false;
  }
  return file.Close();
}

bool LcUSysFile::Flush(const char16_t* path) {
  LcUSysNativeFile file;
  return file.Open(path, kWrite, LcUSysFileHandle::eOPEN_EXISTING,
                   LcUSysNativeFile::eSHARE_READ | LcUSysNativeFile::eSHARE_WRITE, 0, 0) &&
         file.Sync();
}

bool LcUSysFile::GetFileChecksum(const char16_t* path, uint32_t& out) {
  int64_t size = 0;
  LcUSysFileHandle file;
  if (!GetSize(path, size) ||
      !file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_WRITE, LcUSysFileHandle::eHINT_SEQUENTIAL,
                 LcUSysFileHandle::ePERMISSION_READ))
    return false;
  LcUChecksum checksum;
  unsigned char block[4096];
  for (int64_t left = size; left > 0; left -= int64_t(sizeof block)) {
    size_t n = left < int64_t(sizeof block) ? size_t(left) : sizeof block;
    if (std::fread(block, 1, n, file.GetStream()) != n) return false;
    checksum.Add(block, uint32_t(n));
  }
  out = checksum.GetResult();
  return true;
}
