#include <gtest/gtest.h>

#include <string>

#include "filestream/LcUFileMetaData.h"
#include "serial/LcUJsonStream.h"

namespace {
struct Fields {
  bool time, revision, size;
  int64_t timeValue;
  const char16_t* revisionValue;
  uint64_t sizeValue;
};

LcUFileMetaData Make(const Fields& f) {
  LcUFileMetaData m;
  if (f.time) m.SetModificationTime(f.timeValue);
  if (f.revision) m.SetRevisionId(f.revisionValue);
  if (f.size) m.SetFileSize(f.sizeValue);
  return m;
}
}  // namespace

TEST(LcUFileMetaDataTest, EqualityRulesInTheirOrder) {
  const struct {
    Fields a, b;
    bool equal;
  } cases[] = {
      // Sizes that differ part them, whatever else agrees.
      {{true, true, true, 5, u"e1", 10}, {true, true, true, 5, u"e1", 11}, false},
      // Revision ids decide alone: times are not looked at.
      {{true, true, false, 5, u"e1", 0}, {true, true, false, 6, u"e1", 0}, true},
      {{true, true, false, 5, u"e1", 0}, {true, true, false, 5, u"e2", 0}, false},
      {{false, true, true, 0, u"e1", 10}, {false, true, false, 0, u"e1", 0}, true},
      // Then times, when one revision id is missing.
      {{true, true, false, 5, u"e1", 0}, {true, false, false, 5, nullptr, 0}, true},
      {{true, false, true, 5, nullptr, 10}, {true, false, true, 6, nullptr, 10}, false},
      // Size alone proves nothing.
      {{false, false, true, 0, nullptr, 10}, {false, false, true, 0, nullptr, 10}, false},
      {{false, false, false, 0, nullptr, 0}, {false, false, false, 0, nullptr, 0}, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.equal, Make(c.a) == Make(c.b));
    EXPECT_EQ(c.equal, Make(c.b) == Make(c.a));
    EXPECT_EQ(!c.equal, Make(c.a) != Make(c.b));
  }
}

TEST(LcUFileMetaDataTest, SettersSetBitsAndClearResetsAll) {
  LcUFileMetaData m;
  EXPECT_EQ(0u, m.GetMask());
  m.SetPermissions(128);
  m.SetFileSize(0);
  EXPECT_EQ(LcUFileMetaData::ePERMISSIONS | LcUFileMetaData::eFILE_SIZE, m.GetMask());
  m.SetModificationTime(-1);
  m.SetRevisionId(u"r");
  EXPECT_EQ(15u, m.GetMask());
  m.Clear();
  EXPECT_EQ(0u, m.GetMask());
  EXPECT_EQ(0, m.GetModificationTime());
  EXPECT_EQ(0u, m.GetFileSize());
  EXPECT_EQ(0u, m.GetPermissions());
  EXPECT_TRUE(m.GetRevisionId().IsNull());
}

TEST(LcUFileMetaDataTest, SavesPresentValuesAndLoadsThemBack) {
  LcUFileMetaData m;
  m.SetModificationTime(INT64_MIN + 1);
  m.SetRevisionId(u"\"W/\u00e9tag\"");
  m.SetFileSize(UINT64_MAX);
  m.SetPermissions(0x1A4);
  LcUJsonStream writer;
  m.Save(writer);
  LcUStringA text;
  ASSERT_TRUE(writer.PrintText(false, text));

  LcUJsonStream reader;
  ASSERT_TRUE(reader.LoadText(text.Get()));
  LcUFileMetaData back;
  back.SetFileSize(3);
  ASSERT_TRUE(back.Load(reader));
  EXPECT_EQ(15u, back.GetMask());
  EXPECT_EQ(INT64_MIN + 1, back.GetModificationTime());
  EXPECT_EQ(std::u16string(u"\"W/\u00e9tag\""), std::u16string(back.GetRevisionId().Get()));
  EXPECT_EQ(UINT64_MAX, back.GetFileSize());
  EXPECT_EQ(0x1A4u, back.GetPermissions());

  LcUFileMetaData partial;
  partial.SetFileSize(42);
  LcUJsonStream second;
  partial.Save(second);
  ASSERT_TRUE(second.PrintText(false, text));
  EXPECT_STREQ("{\"FileSize\":\"42\"}", text.Get());
}

TEST(LcUFileMetaDataTest, AValueOfTheWrongTypeStaysAbsent) {
  const struct {
    const char* json;
    uint32_t mask;
    bool sound;
  } cases[] = {
      {"{\"ModificationTime\":\"7\",\"RevisionId\":\"r\",\"FileSize\":\"9\",\"Permissions\":\"x\"}", 7, false},
      {"{\"ModificationTime\":\"7\",\"RevisionId\":\"r\",\"FileSize\":9}", 3, false},
      {"{\"ModificationTime\":\"7\",\"RevisionId\":5}", 1, false},
      {"{\"ModificationTime\":7}", 0, false},
      {"{\"FileSize\":\"-1\",\"Other\":1}", 0, false},
      {"{\"Permissions\":128}", 8, true},
      {"[1]", 0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.json);
    LcUJsonStream reader;
    ASSERT_TRUE(reader.LoadText(c.json));
    LcUFileMetaData m;
    m.SetRevisionId(u"stale");
    EXPECT_EQ(c.sound, m.Load(reader));
    EXPECT_EQ(c.mask, m.GetMask());
    EXPECT_EQ(m.Has(LcUFileMetaData::eMODIFICATION_TIME) ? 7 : 0, m.GetModificationTime());
    EXPECT_EQ(m.Has(LcUFileMetaData::eFILE_SIZE) ? 9u : 0u, m.GetFileSize());
    EXPECT_EQ(m.Has(LcUFileMetaData::ePERMISSIONS) ? 128u : 0u, m.GetPermissions());
    EXPECT_EQ(m.Has(LcUFileMetaData::eREVISION_ID), !m.GetRevisionId().IsNull());
  }
}
