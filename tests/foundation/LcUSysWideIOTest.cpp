#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "foundation/LcUSysWideIO.h"

namespace {
// A text-mode stream holding bytes, as the item file is opened.
FILE* Stream(const std::string& bytes) {
  const char* path = "LcUSysWideIOTest.txt";
  FILE* file = std::fopen(path, "wb");
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
  return std::fopen(path, "r");
}
}  // namespace

TEST(LcUSysWideIO, ReadsOneLineAsFgetwsDoes) {
  struct Case {
    std::string bytes;
    int32_t limit;
    bool ok;
    std::u16string line;
  };
  const Case cases[] = {
      {"Shaft:1|Gear:1", 1024, true, u"Shaft:1|Gear:1"},  // unterminated
      {"first\nsecond", 1024, true, u"first\n"},          // the newline stays
      {"abcdefgh", 5, true, u"abcd"},                     // at most limit - 1 units
      {"", 1024, false, u""},
  };
  for (const Case& c : cases) {
    FILE* file = Stream(c.bytes);
    char16_t buffer[1024] = {u'?'};
    EXPECT_EQ(c.ok, LcUSysWideIO::ReadLine(file, buffer, c.limit)) << c.bytes;
    if (c.ok) {
      EXPECT_EQ(c.line, std::u16string(buffer)) << c.bytes;
    }
    std::fclose(file);
  }
}
