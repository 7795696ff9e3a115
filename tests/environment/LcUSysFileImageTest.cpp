#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "EnvironmentTesting.h"

using namespace EnvironmentTesting;

namespace {
class LcUSysFileImage : public TempFolderTest {};

void Put(std::string& image, size_t at, uint32_t value, int bytes) {
  if (image.size() < at + bytes) image.resize(at + bytes, '\0');
  for (int i = 0; i < bytes; ++i) image[at + i] = char(value >> (8 * i));
}

// A DOS header pointing at offset 64, the "PE" signature there, and an
// optional header's magic after the 20-byte file header.
std::string Image(uint16_t magic, size_t optionalBytes) {
  std::string image(64, '\0');
  Put(image, 0, 23117, 2);
  Put(image, 60, 64, 4);
  Put(image, 64, 17744, 4);
  image.resize(88 + optionalBytes, '\0');
  if (optionalBytes >= 2) Put(image, 88, magic, 2);
  return image;
}

TEST_F(LcUSysFileImage, BuiltPrograms) {
  EXPECT_EQ(LcUSysFile::GetPEImageType(BuildPath(TW_PE32PLUS).c_str()), LcUSysFile::ePE_32_PLUS);
  EXPECT_EQ(LcUSysFile::GetPEImageType(BuildPath(TW_PE32).c_str()), LcUSysFile::ePE_32);
}

TEST_F(LcUSysFileImage, FailuresAreLoggedWithThePath) {
  std::string bigOffset = Image(523, 224);
  Put(bigOffset, 60, 0x7FFF0000, 4);
  std::string notPE = Image(523, 224);
  Put(notPE, 64, 0x454E, 4);
  struct Case {
    const char16_t* name;
    std::string bytes;
    int type;
    const char* logged;  // the line, up to the path
  };
  const Case cases[] = {
      {u"text.txt", "This is plain text, long enough to fill the whole header of a DOS program file......", 0,
       "Not a DOS file: "},
      {u"short.exe", "MZ0123456789", 0, "Can't read DOS header from "},
      {u"far.exe", bigOffset, 0, "Can't read PE signature from "},
      {u"notpe.exe", notPE, 0, "Not a PE file: "},
      {u"cut.exe", Image(523, 100), 0, "Can't read optional header from "},
      {u"rom.exe", Image(263, 224), 3, nullptr},
      {u"odd.exe", Image(0x1234, 224), 4, "Unknown PE image type found in "},
  };
  for (const Case& c : cases) {
    LcUString path = In(c.name);
    SCOPED_TRACE(Narrow(path));
    ASSERT_TRUE(WriteFile(path, c.bytes));
    EXPECT_EQ(LcUSysFile::GetPEImageType(path.Get()), c.type);
    if (c.logged) {
      EXPECT_NE(LogText().find(std::string("LcUSysFile::GetPEImageType() : ") + c.logged + Narrow(path) + "\n"),
                std::string::npos);
    }
  }
  LcUString missing = In(u"missing.exe");
  EXPECT_EQ(LcUSysFile::GetPEImageType(missing.Get()), 0);
  EXPECT_NE(LogText().find("LcUSysFile::GetPEImageType() : " + Narrow(missing) + " doesn't exist.\n"),
            std::string::npos);
}
}  // namespace
