#include <cstdint>

#include "environment/LcUSysFile.h"
#include "environment/LcUSysFileHandle.h"
#include "foundation/LcUError.h"

namespace {
const int32_t kDosHeaderSize = 64;
const int32_t kSignatureOffset = 60;
const int32_t kFileHeaderSize = 20;
const int32_t kOptionalHeaderSize = 224;
const uint16_t kDosMagic = 23117;     // "MZ"
const uint32_t kPESignature = 17744;  // "PE\0\0"

// The image is little-endian whatever the host.
uint32_t Little(const unsigned char* bytes, int count) {
  uint32_t value = 0;
  for (int i = count - 1; i >= 0; --i) value = value << 8 | bytes[i];
  return value;
}

int Fail(const char16_t* why, const char16_t* path) {
  LcUError::LogF(u"LcUSysFile::GetPEImageType() : %ls%ls\n", why, path);
  return LcUSysFile::ePE_FAILED;
}

bool ReadExactly(FILE* stream, unsigned char* target, size_t count) {
  return std::fread(target, 1, count, stream) == count;
}
}  // namespace

int LcUSysFile::GetPEImageType(const char16_t* path) {
  if (!path) path = u"";
  if (!Exists(path)) {
    LcUError::LogF(u"LcUSysFile::GetPEImageType() : %ls doesn't exist.\n", path);
    return ePE_FAILED;
  }
  LcUSysFileHandle file;
  if (!file.Open(path, LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                 LcUSysFileHandle::eMODE_BINARY, LcUSysFileHandle::eDENY_WRITE, 0, LcUSysFileHandle::ePERMISSION_READ))
    return Fail(u"Can't open ", path);
  FILE* stream = file.GetStream();
  unsigned char header[kOptionalHeaderSize];
  if (!ReadExactly(stream, header, kDosHeaderSize)) return Fail(u"Can't read DOS header from ", path);
  if (Little(header, 2) != kDosMagic) return Fail(u"Not a DOS file: ", path);
  uint32_t signatureAt = Little(header + kSignatureOffset, 4);
  if (std::fseek(stream, long(signatureAt), SEEK_SET) != 0 || !ReadExactly(stream, header, 4))
    return Fail(u"Can't read PE signature from ", path);
  if (Little(header, 4) != kPESignature) return Fail(u"Not a PE file: ", path);
  if (std::fseek(stream, kFileHeaderSize, SEEK_CUR) != 0 || !ReadExactly(stream, header, kOptionalHeaderSize))
    return Fail(u"Can't read optional header from ", path);
  switch (Little(header, 2)) {
    case 267:
      return ePE_32;
    case 523:
      return ePE_32_PLUS;
    case 263:
      return ePE_ROM;
    default:
      LcUError::LogF(u"LcUSysFile::GetPEImageType() : Unknown PE image type found in %ls\n", path);
      return ePE_UNKNOWN;
  }
}
