#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/LcUMemory.h"

// Shared by the allocator tests with and without checking, which set up
// fresh pages differently but must hand blocks out in the same order.
namespace ArenaTesting {
// Size 36 has 40-byte blocks and 16384-byte pages in 65536-byte regions.
// Returns the broken expectations, one a line; empty when the blocks came
// as from a free list threaded highest first, with freed blocks on top.
inline std::string HandOutOrderFaults() {
  const uint64_t size = 36, block = 40, page = 16384;
  const size_t pageZero = (page - 48) / block, pageOne = (page - 16) / block;
  std::string faults;
  auto expect = [&](bool holds, const char* what) {
    if (!holds) faults += std::string(what) + "\n";
  };
  std::vector<char*> blocks;
  auto take = [&] {
    blocks.push_back(static_cast<char*>(LcUMemory::Alloc(size, 4, 0)));
    return blocks.back();
  };
  char* first = take();
  uintptr_t region = reinterpret_cast<uintptr_t>(first) & ~uintptr_t(0xFFFF);
  expect(reinterpret_cast<uintptr_t>(first) == region + 48 + (pageZero - 1) * block, "fresh page: highest first");
  expect(take() == first - block, "then the one below");
  LcUMemory::Free(blocks.back(), size, 4);
  char* freed = blocks.back();
  blocks.pop_back();
  expect(take() == freed, "a freed block comes back first");
  while (blocks.size() < pageZero) take();
  expect(reinterpret_cast<uintptr_t>(blocks.back()) == region + 48, "page 0 ends with its lowest block");
  expect(LcUMemory::GetArenaCommittedBytes(size) == page, "page 0 alone is committed");
  char* next = take();
  expect(reinterpret_cast<uintptr_t>(next) == region + page + 16 + (pageOne - 1) * block, "page 1: highest first");
  // Page 0 is full; a block freed there makes it the page to serve again.
  char* middle = blocks[pageZero / 2];
  LcUMemory::Free(middle, size, 4);
  blocks[pageZero / 2] = static_cast<char*>(LcUMemory::Alloc(size, 4, 0));
  expect(blocks[pageZero / 2] == middle, "a full page that regains a block serves it next");
  for (char* b : blocks) LcUMemory::Free(b, size, 4);
  expect(LcUMemory::GetArenaReservedBytes(size) == 0, "the region goes with its last block");
  return faults;
}
}  // namespace ArenaTesting
