#include <gtest/gtest.h>

#include "SerialTesting.h"
#include "foundation/LcUMemory.h"
#include "serial/LcUBitArray.h"
#include "serial/LcUVector.h"

TEST(LcUVector, CapacityIsWhatTheAllocatorGrants) {
  LcUVector<int32_t> v;
  EXPECT_EQ(v.Capacity(), 0);
  for (int32_t i = 0; i < 1000; ++i) {
    int32_t before = v.Capacity();
    ASSERT_TRUE(v.Add(i));
    if (v.Capacity() != before) {
      EXPECT_EQ(uint64_t(v.Capacity()), LcUMemory::GoodSize(uint64_t(i + 2) * 4) / 4) << i;
    }
  }
  for (int32_t i = 0; i < 1000; ++i) ASSERT_EQ(v[i], i);
  ASSERT_TRUE(v.Insert(0, -1));
  ASSERT_TRUE(v.Insert(v.Size(), 1000));
  EXPECT_FALSE(v.Insert(v.Size() + 1, 0));
  EXPECT_EQ(v[0], -1);
  EXPECT_EQ(v[1], 0);
  EXPECT_EQ(v[1001], 1000);
  ASSERT_TRUE(v.RemoveAt(0));
  EXPECT_FALSE(v.RemoveAt(v.Size()));
  EXPECT_EQ(v[0], 0);
  EXPECT_EQ(v.Size(), 1001);
  // Adding an element of the vector itself while it grows.
  LcUVector<int32_t> w;
  w.Add(7);
  for (int i = 0; i < 20; ++i) w.Add(w[0]);
  EXPECT_EQ(w[20], 7);
  LcUVector<int32_t> copy(v);
  EXPECT_EQ(copy.Size(), v.Size());
  EXPECT_EQ(copy[1000], 1000);
  v.Clear();
  EXPECT_EQ(v.Size(), 0);
  EXPECT_GT(v.Capacity(), 0);
}

TEST(LcUVector, SetSizeZeroesAndNegativeSizeIsReported) {
  LcUVector<double> v;
  ASSERT_TRUE(v.SetSize(5));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(v[i], 0.0);
  v[4] = 2.5;
  ASSERT_TRUE(v.SetSize(2));
  ASSERT_TRUE(v.SetSize(5));
  EXPECT_EQ(v[4], 0.0);
  size_t before = SerialTesting::LogText().size();
  EXPECT_FALSE(v.SetSize(-3));
  EXPECT_FALSE(v.Reserve(-1));
  EXPECT_EQ(v.Size(), 5);
  EXPECT_NE(SerialTesting::LogText().substr(before).find("LcUVector- Negative size -3"), std::string::npos);
}

TEST(LcUBitArray, WordsMaskingAndCounts) {
  EXPECT_EQ(LcUBitArray::WordCount(0), 0u);
  EXPECT_EQ(LcUBitArray::WordCount(1), 1u);
  EXPECT_EQ(LcUBitArray::WordCount(32), 1u);
  EXPECT_EQ(LcUBitArray::WordCount(33), 2u);
  LcUBitArray bits(70);
  EXPECT_EQ(bits.Count(), 70u);
  EXPECT_EQ(bits.CountSet(), 0u);
  for (uint32_t i : {0u, 31u, 32u, 69u}) bits.Set(i);
  bits.Set(70);
  bits.Set(95);
  EXPECT_EQ(bits.CountSet(), 4u);
  EXPECT_TRUE(bits.Test(31));
  EXPECT_TRUE(bits.Test(32));
  EXPECT_FALSE(bits.Test(33));
  EXPECT_FALSE(bits.Test(95));
  EXPECT_EQ(bits.Words()[2], 1u << 5);
  bits.Clear(31);
  bits.Clear(500);
  EXPECT_FALSE(bits.Test(31));
  EXPECT_EQ(bits.CountSet(), 3u);
  bits.ClearAll();
  EXPECT_EQ(bits.CountSet(), 0u);
  LcUBitArray empty(0);
  EXPECT_EQ(empty.Words(), nullptr);
  EXPECT_FALSE(empty.Test(0));
}

TEST(LcUBitArray, CopyAssignAndCompare) {
  LcUBitArray a(40);
  a.Set(3);
  a.Set(39);
  LcUBitArray b(a);
  EXPECT_TRUE(a == b);
  b.Clear(39);
  EXPECT_TRUE(a != b);
  // Same word count: the words are kept.
  LcUBitArray c(50);
  const uint32_t* words = c.Words();
  c = a;
  EXPECT_EQ(c.Words(), words);
  EXPECT_EQ(c.Count(), 40u);
  EXPECT_TRUE(c == a);
  // Another word count: new words.
  LcUBitArray d(100);
  d = a;
  EXPECT_EQ(d.Count(), 40u);
  EXPECT_TRUE(d == a);
  // Equal bits, other counts.
  LcUBitArray e(41), f(42);
  EXPECT_FALSE(e == f);
  LcUBitArray g;
  g = LcUBitArray(0);
  EXPECT_TRUE(g == LcUBitArray());
}
