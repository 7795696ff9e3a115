#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "serial/LcUEncode.h"
#include "serial/LcUSysCryptHash.h"
#include "serial/LcUSysCryptHashSHA1.h"
#include "serial/LcUSysCryptHashSHA256.h"

namespace {
std::string Hex(const void* data, uint32_t size) {
  LcUStringA out;
  LcUEncode::EncodeHex(data, size, out);
  return out.IsNull() ? "" : out.Get();
}

std::string Base64(const std::string& bytes) {
  LcUStringA out;
  LcUEncode::EncodeBase64(bytes.data(), uint32_t(bytes.size()), out);
  return out.IsNull() ? "" : out.Get();
}
}  // namespace

TEST(LcUEncode, Base64WritesNoPadding) {
  struct Case {
    std::string in;
    const char* out;
  };
  // Each length mod 3, and the alphabet's edges.
  const Case kCases[] = {{"", ""},
                         {"f", "Zg"},
                         {"fo", "Zm8"},
                         {"foo", "Zm9v"},
                         {"foob", "Zm9vYg"},
                         {"fooba", "Zm9vYmE"},
                         {"foobar", "Zm9vYmFy"},
                         {"\xFB\xFF\xBF", "+/+/"},
                         {std::string("\x00\x10\x83", 3), "ABCD"},
                         {std::string(1, '\0'), "AA"}};
  for (const Case& c : kCases) EXPECT_EQ(Base64(c.in), c.out) << c.out;
}

TEST(LcUEncode, HexAndReadable) {
  const uint8_t bytes[] = {0x00, 0x7F, 0xA5, 0xFF};
  EXPECT_EQ(Hex(bytes, 4), "007FA5FF");
  const char* text = "a b/Z9\xE9";
  LcUStringA out;
  LcUEncode::EncodeReadable(text, uint32_t(std::strlen(text)), out);
  EXPECT_STREQ(out.Get(), "a/20b/2FZ9/E9");
  LcUEncode::EncodeReadable("", 0, out);
  EXPECT_EQ(out.Length(), 0);
}

TEST(LcUSysCryptHash, KnownAnswers) {
  struct Case {
    std::string in;
    const char* sha1;
    const char* sha256;
  };
  const Case kCases[] = {
      {"", "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709",
       "E3B0C44298FC1C149AFBF4C8996FB92427AE41E4649B934CA495991B7852B855"},
      {"abc", "A9993E364706816ABA3E25717850C26C9CD0D89D",
       "BA7816BF8F01CFEA414140DE5DAE2223B00361A396177A9CB410FF61F20015AD"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq", "84983E441C3BD26EBAAE4AA1F95129E5E54670F1",
       "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1"},
      {std::string(1000000, 'a'), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F",
       "CDC76E5C9914FB9281A1C7E284D73E67F1809A48A497200E046D39CCC7112CD0"}};
  for (const Case& c : kCases) {
    uint8_t sha1[LcUSysCryptHash::eSHA1_SIZE];
    uint8_t sha256[LcUSysCryptHash::eSHA256_SIZE];
    ASSERT_TRUE(LcUSysCryptHash::SHA1(c.in.data(), uint32_t(c.in.size()), sha1));
    ASSERT_TRUE(LcUSysCryptHash::SHA256(c.in.data(), uint32_t(c.in.size()), sha256));
    EXPECT_EQ(Hex(sha1, sizeof sha1), c.sha1) << c.in.size();
    EXPECT_EQ(Hex(sha256, sizeof sha256), c.sha256) << c.in.size();
  }
}

TEST(LcUSysCryptHash, PiecesResetAndSpentHashes) {
  std::string text = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
  LcUSysCryptHashSHA256 hash;
  ASSERT_TRUE(hash.IsValid());
  EXPECT_EQ(hash.DigestSize(), 32u);
  ASSERT_TRUE(hash.Add("garbage", 7));
  ASSERT_TRUE(hash.Reset());
  for (size_t at = 0; at < text.size(); at += 5) ASSERT_TRUE(hash.Add(text.data() + at, uint32_t(std::min<size_t>(5, text.size() - at))));
  uint8_t digest[32];
  EXPECT_FALSE(hash.Finish(digest, 31));
  ASSERT_TRUE(hash.Finish(digest, 32));
  EXPECT_EQ(Hex(digest, 32), "248D6A61D20638B8E5C026930C3E6039A33CE45964FF2167F6ECEDD419DB06C1");
  EXPECT_FALSE(hash.Add("x", 1));
  EXPECT_FALSE(hash.Finish(digest, 32));
  LcUSysCryptHashSHA1 sha1;
  EXPECT_EQ(sha1.DigestSize(), 20u);
}
