#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "serial/LcUStream.h"
#include "serial/LcUStreamBlockData.h"
#include "serial/LcUStreamBuffer.h"
#include "serial/LcUStreamReader.h"

// Any bytes, behind each header the reader knows and raw: every read must
// either give values or fail the stream, and a failed stream must stay
// failed, give zeros and consume nothing.
namespace {
const char* const kHeaders[] = {
    "", "#LcUStream-V1.1 binary double release utf8 linull\n\0\0\0\0\0\0",
    "#LcUStream-V1.1 binary single debug utf8 linull\n\x01\0\0\0\0\0\0\0",
    "#LcUStream-V1.1 ascii double release utf8 linull\n", "#LcUStream-V1.1 ascii single debug C linull\n  Sync\n"};
const size_t kHeaderSizes[] = {0, 56, 56, 49, 51};

void ReadAll(LcUStreamReader& r, const uint8_t* script, size_t count) {
  double doubles[64];
  int32_t ints[64];
  LcUStringA text;
  LcUString wide;
  LcUStreamBlockData block;
  for (size_t i = 0; i < count; ++i) {
    uint8_t op = script[i];
    uint32_t n = op >> 4;
    switch (op & 15) {
      case 0: r.ReadNat8(); break;
      case 1: r.ReadInt16(); break;
      case 2: r.ReadInt32(); break;
      case 3: r.ReadNat64(); break;
      case 4: r.ReadFloat(); break;
      case 5: r.ReadDoubleArray(doubles, n); break;
      case 6: r.ReadInt32Array(ints, n * 4); break;
      case 7: r.ReadString(text); break;
      case 8: r.ReadWideString(wide); break;
      case 9: r.ReadBits(n * 2 + 1); break;
      case 10: r.Sync(); break;
      case 11: block.Read(r); break;
      case 12: r.ReadSingle(); break;
      default: r.ReadInt32Checked(int32_t(n)); break;
    }
  }
  if (r.GetError()) {
    const uint8_t* before = r.blockCurrent;
    int32_t code = r.GetError();
    if (r.ReadInt32() != 0 || r.blockCurrent != before || r.GetError() != code) __builtin_trap();
  }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  static bool started = LcUStream::Initialize();
  (void)started;
  // The first bytes choose the header and the reads; the rest is the stream.
  size_t header = data[0] % 5;
  size_t scriptSize = data[1] % 32;
  if (size < 2 + scriptSize) return 0;
  const uint8_t* script = data + 2;
  std::string bytes(kHeaders[header], kHeaderSizes[header]);
  bytes.append(reinterpret_cast<const char*>(script + scriptSize), size - 2 - scriptSize);
  for (int strict = 0; strict < 2; ++strict) {
    LcUStreamBuffer buffer;
    buffer.SetData(bytes.data(), uint32_t(bytes.size()), 1);
    LcUStreamReader reader(&buffer);
    if (header == 0) reader.ascii = data[1] & 1;
    reader.ReadBegin(header != 0, strict != 0);
    ReadAll(reader, script, scriptSize);
    reader.ReadEnd(true);
  }
  return 0;
}
