#include <gtest/gtest.h>

#include <string>

#include "filestream/LcUHttpHeaders.h"

namespace {
const char16_t* kRaw =
    u"HTTP/1.1 206 Partial Content\r\n"
    u"content-length: 2\r\n"
    u"Content-Range:   bytes 0-1/5000 \r\n"
    u"ETag: \"abc\"\r\n"
    u"X-Content-Length: 9\r\n\r\n";

std::string Narrow(const LcUString& text) {
  std::string out;
  for (int32_t i = 0; i < text.Length(); ++i) out += char(text[i]);
  return out;
}
}  // namespace

TEST(LcUHttpHeaders, FindsNamesWithoutRegardToCaseAndNeverTheStatusLine) {
  LcUString value;
  ASSERT_TRUE(LcUHttpHeaders::Find(kRaw, u"Content-Length", value));
  EXPECT_EQ("2", Narrow(value));
  ASSERT_TRUE(LcUHttpHeaders::Find(kRaw, u"etag", value));
  EXPECT_EQ("\"abc\"", Narrow(value));
  EXPECT_FALSE(LcUHttpHeaders::Find(kRaw, u"Content", value));
  EXPECT_FALSE(LcUHttpHeaders::Find(u"ETag: 1\r\n", u"ETag", value)) << "the first line is the status";
  EXPECT_FALSE(LcUHttpHeaders::Find(nullptr, u"ETag", value));
  uint64_t size = 0;
  ASSERT_TRUE(LcUHttpHeaders::GetContentLength(kRaw, size));
  EXPECT_EQ(2u, size);
  ASSERT_TRUE(LcUHttpHeaders::GetContentRangeTotal(kRaw, size));
  EXPECT_EQ(5000u, size);
}

TEST(LcUHttpHeaders, SizesTakeOnlyWholeNumbers) {
  struct Case {
    const char16_t* raw;
    bool length;
    bool range;
    uint64_t value;
  };
  for (const Case& c : {
           Case{u"HTTP/1.1 200 OK\r\nContent-Length: 18446744073709551615\r\n", true, false, UINT64_MAX},
           Case{u"HTTP/1.1 200 OK\r\nContent-Length: 18446744073709551616\r\n", false, false, 0},
           Case{u"HTTP/1.1 200 OK\r\nContent-Length: 12x\r\n", false, false, 0},
           Case{u"HTTP/1.1 200 OK\r\nContent-Length:\r\n", false, false, 0},
           Case{u"HTTP/1.1 206 OK\r\nContent-Range: bytes 10-19/268435456\r\n", false, true, 268435456},
           Case{u"HTTP/1.1 206 OK\r\nContent-Range: bytes */1000\r\n", false, false, 0},
           Case{u"HTTP/1.1 206 OK\r\nContent-Range: bytes 1-2/*\r\n", false, false, 0},
           Case{u"HTTP/1.1 206 OK\r\nContent-Range: items 1-2/3\r\n", false, false, 0},
       }) {
    uint64_t value = 0;
    EXPECT_EQ(c.length, LcUHttpHeaders::GetContentLength(c.raw, value));
    if (c.length) {
      EXPECT_EQ(c.value, value);
    }
    EXPECT_EQ(c.range, LcUHttpHeaders::GetContentRangeTotal(c.raw, value));
    if (c.range) {
      EXPECT_EQ(c.value, value);
    }
  }
  uint64_t total = 0;
  EXPECT_TRUE(LcUHttpHeaders::GetFirstRangeTotal(u"bytes 0-1/5000", total));
  EXPECT_EQ(5000u, total);
  EXPECT_FALSE(LcUHttpHeaders::GetFirstRangeTotal(u"bytes 0-2/5000", total)) << "only the answer to 0-1";
  EXPECT_FALSE(LcUHttpHeaders::GetFirstRangeTotal(u"bytes 0-1/", total));
  EXPECT_FALSE(LcUHttpHeaders::GetFirstRangeTotal(nullptr, total));
}

TEST(LcUHttpHeaders, DatesInAllThreeFormsAndNothingElse) {
  const int64_t nov1994 = 784111777;  // Sun, 06 Nov 1994 08:49:37 GMT
  struct Case {
    const char16_t* text;
    bool ok;
    int64_t seconds;
  };
  for (const Case& c : {Case{u"Sun, 06 Nov 1994 08:49:37 GMT", true, nov1994},
                        Case{u"Sunday, 06-Nov-94 08:49:37 GMT", true, nov1994},
                        Case{u"Sun Nov  6 08:49:37 1994", true, nov1994},
                        Case{u"Thu, 01 Jan 1970 00:00:00 GMT", true, 0},
                        Case{u"Tue, 29 Feb 2028 23:59:59 GMT", true, 1835481599},
                        Case{u"Monday, 01-Jan-29 00:00:00 GMT", true, 1861920000},
                        Case{u"Sun, 06 Nov 1994 08:49:37", false, 0},
                        Case{u"Sun, 06 Foo 1994 08:49:37 GMT", false, 0},
                        Case{u"Sun, 32 Nov 1994 08:49:37 GMT", false, 0},
                        Case{u"Sun, 06 Nov 1994 24:00:00 GMT", false, 0},
                        Case{u"Sun, 6 Nov 1994 08:49:37 GMT", false, 0},
                        Case{u"Sun,", false, 0},
                        Case{u"Sun, 0", false, 0},
                        Case{u"", false, 0}}) {
    int64_t seconds = -1;
    EXPECT_EQ(c.ok, LcUHttpHeaders::ParseDate(c.text, seconds)) << Narrow(LcUString(c.text));
    if (c.ok) {
      EXPECT_EQ(c.seconds, seconds);
    }
  }
}

TEST(LcUHttpHeaders, RequestTargetsEncodeWhatTheRequestLineCannotCarry) {
  struct Case {
    const char16_t* path;
    const char* target;
  };
  for (const Case& c : {Case{u"/a b.bin", "/a%20b.bin"}, Case{u"/a%20b.bin", "/a%20b.bin"},
                        Case{u"/x?q=1&r=a/b", "/x?q=1&r=a/b"}, Case{u"/\u00e9t\u00e9", "/%C3%A9t%C3%A9"},
                        Case{u"/tab\there", "/tab%09here"}, Case{u"/\x7f", "/%7F"}}) {
    LcUString out;
    LcUHttpHeaders::RequestTarget(c.path, out);
    EXPECT_EQ(c.target, Narrow(out));
  }
}
