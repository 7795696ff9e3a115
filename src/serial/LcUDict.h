#pragma once
#include <cstdint>
#include <new>
#include <utility>

#include "foundation/LcUMemory.h"
#include "serial/LcUDictKey.h"

// A chained hash table for 64-bit, narrow text and wide text keys. All
// elements lie on one doubly linked list, and a bucket is the first and last
// element of its run on that list, so a bucket's elements are adjacent.
template <typename Key, typename Value>
class LcUDict {
public:
  using KeyTraits = LcUDictKey<Key>;
  using KeyArg = typename KeyTraits::Arg;

  struct Element {
    Element* next;
    Element* previous;
    uint32_t hash;
    Key key;
    Value value;
  };

  enum : uint32_t { eINITIAL_BUCKETS = 8, eFAST_GROWTH_LIMIT = 512 };

  LcUDict() = default;
  ~LcUDict() {
    Clear();
    FreeBuckets(buckets, bucketCount);
  }
  LcUDict(const LcUDict&) = delete;
  LcUDict& operator=(const LcUDict&) = delete;

  uint32_t Count() const { return count; }
  uint32_t BucketCount() const { return bucketCount ? bucketCount : uint32_t(eINITIAL_BUCKETS); }
  float MaxLoadFactor() const { return maxLoadFactor; }
  void SetMaxLoadFactor(float factor) {
    if (factor > 0) maxLoadFactor = factor;
  }

  // The stored value of key, or null.
  Value* Find(KeyArg key) {
    Element* e = Lookup(key, KeyTraits::Hash(key));
    return e ? &e->value : nullptr;
  }
  const Value* Find(KeyArg key) const { return const_cast<LcUDict*>(this)->Find(key); }
  bool Contains(KeyArg key) const { return Find(key) != nullptr; }

  // Adds key with value unless key is present. The stored value either
  // way, null when memory ran out; inserted tells which.
  Value* Insert(KeyArg key, const Value& value, bool* inserted = nullptr) {
    if (inserted) *inserted = false;
    uint32_t hash = KeyTraits::Hash(key);
    if (Element* e = Lookup(key, hash)) return &e->value;
    if (!buckets && !AllocateBuckets(eINITIAL_BUCKETS)) return nullptr;
    void* block = LcUMemory::Alloc(sizeof(Element), alignof(Element), 0);
    if (!block) return nullptr;
    Element* e = new (block) Element{nullptr, nullptr, hash, Key(), value};
    if (!KeyTraits::Store(e->key, key)) {
      Destroy(e);
      return nullptr;
    }
    Link(buckets, bucketMask, e);
    ++count;
    if (float(count) / float(bucketCount) > maxLoadFactor)
      Rehash(bucketCount < eFAST_GROWTH_LIMIT ? bucketCount * 8 : bucketCount * 2);
    if (inserted) *inserted = true;
    return &e->value;
  }

  // Adds or replaces.
  Value* Set(KeyArg key, const Value& value) {
    bool inserted = false;
    Value* stored = Insert(key, value, &inserted);
    if (stored && !inserted) *stored = value;
    return stored;
  }

  bool Erase(KeyArg key) {
    uint32_t hash = KeyTraits::Hash(key);
    Element* e = Lookup(key, hash);
    if (!e) return false;
    Bucket& b = buckets[hash & bucketMask];
    if (b.first == e && b.last == e) {
      b.first = b.last = nullptr;
    } else if (b.first == e) {
      b.first = e->next;
    } else if (b.last == e) {
      b.last = e->previous;
    }
    Unlink(e);
    Destroy(e);
    --count;
    return true;
  }

  // Keeps the bucket array at its size.
  void Clear() {
    for (Element* e = head; e;) {
      Element* next = e->next;
      Destroy(e);
      e = next;
    }
    head = tail = nullptr;
    count = 0;
    for (uint32_t i = 0; i < bucketCount; ++i) buckets[i] = Bucket();
  }

  // The list in bucket order: for (e = First(); e; e = e->next).
  Element* First() const { return head; }

private:
  struct Bucket {
    Element* first = nullptr;
    Element* last = nullptr;
  };

  Element* Lookup(KeyArg key, uint32_t hash) const {
    if (!buckets) return nullptr;
    const Bucket& b = buckets[hash & bucketMask];
    if (!b.first) return nullptr;
    for (Element* e = b.first;; e = e->next) {
      if (e->hash == hash && KeyTraits::Equal(e->key, key)) return e;
      if (e == b.last) return nullptr;
    }
  }

  // A new element goes behind its bucket's run, or at the list's end.
  void Link(Bucket* table, uint32_t mask, Element* e) {
    Bucket& b = table[e->hash & mask];
    Element* after = b.last ? b.last : tail;
    e->previous = after;
    e->next = after ? after->next : nullptr;
    if (e->previous)
      e->previous->next = e;
    else
      head = e;
    if (e->next)
      e->next->previous = e;
    else
      tail = e;
    if (!b.first) b.first = e;
    b.last = e;
  }

  void Unlink(Element* e) {
    if (e->previous)
      e->previous->next = e->next;
    else
      head = e->next;
    if (e->next)
      e->next->previous = e->previous;
    else
      tail = e->previous;
  }

  // Out of memory leaves the table as it was: still correct, only fuller.
  void Rehash(uint32_t newCount) {
    Bucket* fresh = NewBuckets(newCount);
    if (!fresh) return;
    Element* e = head;
    head = tail = nullptr;
    while (e) {
      Element* next = e->next;
      Link(fresh, newCount - 1, e);
      e = next;
    }
    FreeBuckets(buckets, bucketCount);
    buckets = fresh;
    bucketCount = newCount;
    bucketMask = newCount - 1;
  }

  bool AllocateBuckets(uint32_t n) {
    buckets = NewBuckets(n);
    if (!buckets) return false;
    bucketCount = n;
    bucketMask = n - 1;
    return true;
  }

  static Bucket* NewBuckets(uint32_t n) {
    void* block = LcUMemory::Alloc(uint64_t(n) * sizeof(Bucket), alignof(Bucket), 0);
    if (!block) return nullptr;
    Bucket* table = static_cast<Bucket*>(block);
    for (uint32_t i = 0; i < n; ++i) new (table + i) Bucket();
    return table;
  }

  static void FreeBuckets(Bucket* table, uint32_t n) {
    if (table) LcUMemory::Free(table, uint64_t(n) * sizeof(Bucket), alignof(Bucket));
  }

  static void Destroy(Element* e) {
    e->~Element();
    LcUMemory::Free(e, sizeof(Element), alignof(Element));
  }

  float maxLoadFactor = 1.0f;
  uint32_t count = 0;
  Bucket* buckets = nullptr;
  uint32_t bucketMask = 0;
  uint32_t bucketCount = 0;
  Element* head = nullptr;
  Element* tail = nullptr;
};
