#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "serial/LcUDict.h"
#include "serial/LcUDictUniqueName.h"

namespace {
template <typename Dict>
void ExpectBucketsAdjacent(const Dict& dict) {
  // Each bucket's elements form one run on the list.
  std::map<uint32_t, int> runs;
  uint32_t mask = dict.BucketCount() - 1;
  uint32_t count = 0;
  for (auto* e = dict.First(); e; e = e->next, ++count) {
    if (!e->previous || (e->previous->hash & mask) != (e->hash & mask)) ++runs[e->hash & mask];
    if (e->next) {
      EXPECT_EQ(e->next->previous, e);
    }
  }
  EXPECT_EQ(count, dict.Count());
  for (const auto& run : runs) EXPECT_EQ(run.second, 1) << "bucket " << run.first;
}

template <typename Dict>
void ExpectAllFound(const Dict& dict, uint64_t from, uint64_t to) {
  for (uint64_t k = from; k < to; ++k) {
    const int* v = dict.Find(k * 7919);
    ASSERT_NE(v, nullptr) << k;
    EXPECT_EQ(*v, int(k));
  }
}
}  // namespace

TEST(LcUDict, BucketsGrowEightFoldThenDouble) {
  LcUDict<uint64_t, int> dict;
  EXPECT_EQ(dict.BucketCount(), 8u);
  // Element count at which each step happens, and the buckets after it.
  const std::pair<uint64_t, uint32_t> kSteps[] = {{9, 64}, {65, 512}, {513, 1024}, {1025, 2048}, {2049, 4096}};
  uint64_t inserted = 0;
  uint32_t buckets = 8;
  for (const auto& step : kSteps) {
    while (inserted + 1 < step.first) {
      ASSERT_NE(dict.Insert(inserted * 7919, int(inserted)), nullptr);
      ++inserted;
    }
    EXPECT_EQ(dict.BucketCount(), buckets) << "before element " << step.first;
    bool added = false;
    dict.Insert(inserted * 7919, int(inserted), &added);
    EXPECT_TRUE(added);
    ++inserted;
    EXPECT_EQ(dict.BucketCount(), step.second) << "after element " << step.first;
    buckets = step.second;
    ExpectAllFound(dict, 0, inserted);
    ExpectBucketsAdjacent(dict);
  }
  EXPECT_EQ(dict.Count(), inserted);
}

TEST(LcUDict, LoadFactorDelaysGrowth) {
  LcUDict<uint64_t, int> dict;
  dict.SetMaxLoadFactor(2.0f);
  for (uint64_t k = 0; k < 16; ++k) dict.Insert(k, 0);
  EXPECT_EQ(dict.BucketCount(), 8u);
  dict.Insert(16, 0);
  EXPECT_EQ(dict.BucketCount(), 64u);
  dict.SetMaxLoadFactor(0);
  EXPECT_EQ(dict.MaxLoadFactor(), 2.0f);
}

TEST(LcUDict, EraseClearAndReinsert) {
  LcUDict<uint64_t, int> dict;
  for (uint64_t k = 0; k < 600; ++k) dict.Insert(k * 7919, int(k));
  bool added = true;
  EXPECT_EQ(*dict.Insert(5 * 7919, -1, &added), 5) << "insert keeps the present value";
  EXPECT_FALSE(added);
  EXPECT_EQ(*dict.Set(5 * 7919, 5), 5);
  for (uint64_t k = 0; k < 600; k += 2) EXPECT_TRUE(dict.Erase(k * 7919));
  EXPECT_FALSE(dict.Erase(0));
  EXPECT_EQ(dict.Count(), 300u);
  for (uint64_t k = 0; k < 600; ++k) EXPECT_EQ(dict.Contains(k * 7919), k % 2 == 1) << k;
  ExpectBucketsAdjacent(dict);
  uint32_t buckets = dict.BucketCount();
  dict.Clear();
  EXPECT_EQ(dict.Count(), 0u);
  EXPECT_EQ(dict.First(), nullptr);
  EXPECT_EQ(dict.BucketCount(), buckets);
  for (uint64_t k = 0; k < 600; ++k) EXPECT_FALSE(dict.Contains(k * 7919));
  for (uint64_t k = 0; k < 50; ++k) dict.Insert(k * 7919, int(k));
  ExpectAllFound(dict, 0, 50);
  ExpectBucketsAdjacent(dict);
}

// Erasing the first, last and middle of a bucket's run keeps the others reachable.
TEST(LcUDict, EraseWithinOneBucket) {
  LcUDict<uint64_t, int> dict;
  dict.SetMaxLoadFactor(100.0f);
  std::vector<uint64_t> same;
  for (uint64_t k = 0; same.size() < 5; ++k)
    if ((LcUDictKey<uint64_t>::Hash(k) & 7) == 3) same.push_back(k);
  for (uint64_t k = 0; k < 40; ++k) dict.Insert(k, int(k));
  for (uint64_t k : same) dict.Insert(k, int(k));
  for (size_t drop : {size_t(0), size_t(4), size_t(2)}) {
    EXPECT_TRUE(dict.Erase(same[drop]));
    ExpectBucketsAdjacent(dict);
  }
  for (size_t i : {size_t(1), size_t(3)}) EXPECT_TRUE(dict.Contains(same[i]));
  for (uint64_t k = 0; k < 40; ++k) {
    if (k != same[0] && k != same[2] && k != same[4]) {
      EXPECT_TRUE(dict.Contains(k)) << k;
    }
  }
}

// Keys whose hashes are equal are still told apart by the keys themselves.
TEST(LcUDict, EqualHashesDifferentKeys) {
  std::map<uint32_t, uint64_t> seen;
  uint64_t a = 0, b = 0;
  for (uint64_t k = 1; !b; ++k) {
    auto found = seen.emplace(LcUDictKey<uint64_t>::Hash(k), k);
    if (!found.second) {
      a = found.first->second;
      b = k;
    }
  }
  LcUDict<uint64_t, int> dict;
  dict.Insert(a, 1);
  dict.Insert(b, 2);
  EXPECT_EQ(dict.Count(), 2u);
  EXPECT_EQ(*dict.Find(a), 1);
  EXPECT_EQ(*dict.Find(b), 2);
  EXPECT_TRUE(dict.Erase(b));
  EXPECT_EQ(dict.Find(b), nullptr);
  EXPECT_EQ(*dict.Find(a), 1);
}

TEST(LcUDict, TextKeys) {
  LcUDict<LcUString, int> wide;
  LcUDict<LcUStringA, int> narrow;
  for (int i = 0; i < 100; ++i) {
    std::string key = "key" + std::to_string(i);
    std::u16string wideKey(key.begin(), key.end());
    wide.Insert(wideKey.c_str(), i);
    narrow.Insert(key.c_str(), i);
  }
  EXPECT_EQ(*wide.Find(u"key42"), 42);
  EXPECT_EQ(*narrow.Find("key99"), 99);
  EXPECT_EQ(narrow.Find("KEY42"), nullptr);
  EXPECT_EQ(narrow.Find("key"), nullptr);
  // Null and empty are one key.
  narrow.Insert(nullptr, -1);
  EXPECT_EQ(*narrow.Find(""), -1);
  EXPECT_TRUE(narrow.Erase(""));
  EXPECT_FALSE(narrow.Contains(nullptr));
  ExpectBucketsAdjacent(wide);
}

TEST(LcUDict, MakeUniqueName) {
  struct Case {
    std::vector<const char16_t*> taken;
    const char16_t* name;
    const char16_t* suffix;
    const char16_t* expected;
    int result;
  };
  const Case kCases[] = {
      {{u"Part"}, u"Bolt", nullptr, u"Bolt", 0},
      {{u"Part"}, u"Part", nullptr, u"Part (1)", 1},
      {{u"Part", u"Part (1)"}, u"Part", nullptr, u"Part (2)", 1},
      {{u"Name (3)"}, u"Name (3)", nullptr, u"Name (4)", 1},
      {{u"Name(3)"}, u"Name(3)", nullptr, u"Name (4)", 1},
      {{u"Name (3)", u"Name (4)"}, u"Name (3)", nullptr, u"Name (5)", 1},
      {{u"Name (x)"}, u"Name (x)", nullptr, u"Name (x) (1)", 1},
      {{u"Name ()"}, u"Name ()", nullptr, u"Name () (1)", 1},
      {{u"(7)"}, u"(7)", nullptr, u" (8)", 1},
      {{u"Part "}, u"Part ", nullptr, u"Part (1)", 1},
      {{u"Part (999999999)"}, u"Part (999999999)", nullptr, u"Part (1000000000)", 1},
      {{u"Part (1000000000)"}, u"Part (1000000000)", nullptr, u"Part (1000000000) (1)", 1},
      {{u"Part"}, u"Part", u"copy", u"Part (copy)", 1},
      {{u"Part", u"Part (copy)"}, u"Part", u"copy", u"Part (1)", 1},
      {{u"Part (2)"}, u"Part (2)", u"copy", u"Part (copy)", 1},
      {{u"Part (2)", u"Part (copy)"}, u"Part (2)", u"copy", u"Part (copy 2)", 1},
      {{u"Part (2)", u"Part (copy)", u"Part (copy 2)"}, u"Part (2)", u"copy", u"Part (3)", 1},
      {{u"Part (2)"}, u"Part (2)", u"", u"Part (3)", 1},
  };
  for (const Case& c : kCases) {
    LcUDict<LcUString, int> dict;
    for (const char16_t* t : c.taken) dict.Insert(t, 0);
    LcUString out;
    EXPECT_EQ(MakeUniqueName(dict, out, c.name, c.suffix), c.result);
    EXPECT_TRUE(LcUString::Equal(out.Get(), c.expected)) << "case " << (&c - kCases);
    EXPECT_FALSE(c.result == 1 && dict.Contains(out.Get()));
  }
  LcUDict<LcUStringA, int> narrow;
  narrow.Insert("Bolt (9)", 0);
  LcUStringA out;
  EXPECT_EQ(MakeUniqueName(narrow, out, "Bolt (9)", static_cast<const char*>(nullptr)), 1);
  EXPECT_STREQ(out.Get(), "Bolt (10)");
}
