#include <gtest/gtest.h>

#include <limits>

#include "HostSimText.h"

TEST(HostSimText, ShowsNumbersAndStringsAsTheJournalWantsThem) {
  const struct {
    double value;
    const char* text;
  } numbers[] = {
      {0.1, "0.10000000000000001"},    {-0.0, "-0"},  {1e300, "1.0000000000000001e+300"}, {20, "20"},
      {std::numeric_limits<double>::quiet_NaN(), "nan"}, {-std::numeric_limits<double>::infinity(), "-inf"},
  };
  for (const auto& n : numbers) EXPECT_EQ(n.text, HostSimText::Number(n.value));

  const struct {
    std::u16string value;
    const char* text;
  } strings[] = {
      {u"C:\\Models\\A.gam", "\"C:\\Models\\A.gam\""},
      {u"say \"so\"", "\"say \\\"so\\\"\""},
      {u"Tooth:1\r\n", "\"Tooth:1\\r\\n\""},
      {std::u16string(u"a\0b\x1F", 4), "\"a\\x00b\\x1F\""},
      {u"B\u00E9 \U0001F600", "\"B\xC3\xA9 \xF0\x9F\x98\x80\""},
      {std::u16string(1, char16_t(0xD800)) + u"x", "\"\\uD800x\""},
      {std::u16string(1, char16_t(0xDC00)), "\"\\uDC00\""},
  };
  for (const auto& s : strings) EXPECT_EQ(s.text, HostSimText::Quote(s.value.data(), s.value.size()));
  EXPECT_EQ("0x80004005", HostSimText::Hex(HRESULT(0x80004005)));
}
