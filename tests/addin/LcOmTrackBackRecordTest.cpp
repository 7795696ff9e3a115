#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "addin/LcOmTrackBackRecord.h"

TEST(LcOmTrackBackRecord, DefaultsAndTheHeightsBitPattern) {
  LcOmTrackBackRecord record;
  const LcNvCamera& c = record.camera;
  EXPECT_EQ(0, c.projection);
  EXPECT_EQ(0.0, c.position.x);
  EXPECT_EQ(1.0, c.position.z);
  EXPECT_EQ(1.0, c.rotation.w);
  EXPECT_EQ(1.0, c.aspect);
  uint64_t bits = 0;
  std::memcpy(&bits, &c.height, sizeof(bits));
  EXPECT_EQ(0x3FE921FAFC8B007Aull, bits);
  EXPECT_EQ(1.0, c.nearDistance);
  EXPECT_EQ(10.0, c.farDistance);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(1.0, record.scale[i]);
    EXPECT_EQ(0.0, record.offset[i]);
  }
}

TEST(LcOmTrackBackRecord, ConstructionLeavesTheTextsAndHasItemAlone) {
  alignas(LcOmTrackBackRecord) unsigned char storage[sizeof(LcOmTrackBackRecord)];
  std::memset(storage, 0xAB, sizeof(storage));
  auto* record = new (storage) LcOmTrackBackRecord;
  EXPECT_EQ(0xABABu, unsigned(record->documentPath[0]));
  EXPECT_EQ(0xABABu, unsigned(record->itemFilePath[511]));
  EXPECT_EQ(int32_t(0xABABABAB), record->hasItem);
}

TEST(LcOmTrackBackRecord, ByteImageIsLittleEndianAtTheFixedOffsets) {
  LcOmTrackBackRecord record;
  record.setDocumentPath(u"A");
  record.camera.projection = 1;
  record.hasItem = 7;
  const auto* bytes = reinterpret_cast<const unsigned char*>(&record);
  EXPECT_EQ('A', bytes[0]);
  EXPECT_EQ(0, bytes[1]);
  EXPECT_EQ(1, bytes[1552]);
  EXPECT_EQ(7, bytes[1712]);
  double far = 0;
  std::memcpy(&far, bytes + 1640, sizeof(far));
  EXPECT_EQ(10.0, far);
}

TEST(LcOmTrackBackRecord, SettersRefuseWhatDoesNotFit) {
  struct Case {
    size_t units;
    bool item;
    int expected;
  };
  const Case cases[] = {{0, false, 1}, {260, false, 1}, {261, false, 0}, {511, true, 1}, {512, true, 0}};
  for (const Case& c : cases) {
    LcOmTrackBackRecord record;
    record.setDocumentPath(u"before");
    record.setItemFilePath(u"before");
    std::u16string text(c.units, u'p');
    int result = c.item ? record.setItemFilePath(text.c_str()) : record.setDocumentPath(text.c_str());
    EXPECT_EQ(c.expected, result) << c.units;
    const char16_t* field = c.item ? record.itemFilePath : record.documentPath;
    EXPECT_EQ(c.expected ? text : std::u16string(u"before"), std::u16string(field)) << c.units;
  }
  LcOmTrackBackRecord record;
  record.setDocumentPath(u"x");
  EXPECT_EQ(1, record.setDocumentPath(nullptr));  // a null text copies one terminator
  EXPECT_EQ(0, record.documentPath[0]);
}
