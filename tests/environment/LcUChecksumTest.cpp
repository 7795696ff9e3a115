#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "EnvironmentTesting.h"
#include "foundation/LcUChecksum.h"

#ifdef TW_HAVE_ZLIB
#include <zlib.h>
#endif

using namespace EnvironmentTesting;

namespace {
// zlib where there is one; otherwise the definition, reduced at every byte.
uint32_t Reference(const std::string& bytes) {
#ifdef TW_HAVE_ZLIB
  return uint32_t(adler32(adler32(0, nullptr, 0), reinterpret_cast<const Bytef*>(bytes.data()), uInt(bytes.size())));
#else
  uint32_t a = 1, b = 0;
  for (unsigned char c : bytes) {
    a = (a + c) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
#endif
}

// All 0xFF is the input that grows the sums fastest.
std::string Bytes(size_t count, bool worst) {
  std::string bytes(count, '\xFF');
  if (!worst)
    for (size_t i = 0; i < count; ++i) bytes[i] = char((i * 2654435761u) >> 13);
  return bytes;
}

TEST(LcUChecksum, AgreesInAnyPieces) {
  for (bool worst : {false, true}) {
    std::string bytes = Bytes(3 * 5552 + 17, worst);
    for (size_t piece : {size_t(1), size_t(7), size_t(5552), size_t(5553), bytes.size()}) {
      LcUChecksum checksum;
      for (size_t at = 0; at < bytes.size(); at += piece) {
        size_t n = std::min(piece, bytes.size() - at);
        checksum.Add(bytes.data() + at, uint32_t(n));
        if (at % 1001 == 0) {
          EXPECT_EQ(checksum.GetResult(), Reference(bytes.substr(0, at + n)));
        }
      }
      EXPECT_EQ(checksum.GetResult(), Reference(bytes)) << "pieces of " << piece;
      EXPECT_EQ(checksum.GetResult(), Reference(bytes)) << "asked twice";
    }
  }
}

TEST(LcUChecksum, TypedForms) {
  LcUChecksum checksum;
  EXPECT_EQ(checksum.GetResult(), 1u);
  checksum.AddString(nullptr);
  EXPECT_EQ(checksum.GetResult(), Reference(std::string(1, '\0')));
  checksum.Init();
  checksum.AddString("abc");
  EXPECT_EQ(checksum.GetResult(), Reference("abc"));
  checksum.Init();
  checksum.AddWideString(u"ab");
  EXPECT_EQ(checksum.GetResult(), Reference(std::string("a\0b\0", 4)));
  checksum.Init();
  const double values[] = {1.5, -2.25};
  checksum.AddDoubles(values, 2);
  EXPECT_EQ(checksum.GetResult(), Reference(std::string(reinterpret_cast<const char*>(values), sizeof values)));
}

class LcUSysFileChecksum : public TempFolderTest {};

TEST_F(LcUSysFileChecksum, AgreesOnFilesAroundTheBlockSize) {
  for (size_t size : {size_t(0), size_t(1), size_t(4095), size_t(4096), size_t(4097), size_t(10) << 20}) {
    std::string bytes = Bytes(size, false);
    LcUString path = In(u"data.bin");
    ASSERT_TRUE(WriteFile(path, bytes));
    uint32_t sum = 0;
    ASSERT_TRUE(LcUSysFile::GetFileChecksum(path.Get(), sum)) << size;
    EXPECT_EQ(sum, Reference(bytes)) << size;
  }
  uint32_t sum = 0;
  EXPECT_FALSE(LcUSysFile::GetFileChecksum(In(u"missing").Get(), sum));
  EXPECT_FALSE(LcUSysFile::GetFileChecksum(folder.Get(), sum));
}
}  // namespace
