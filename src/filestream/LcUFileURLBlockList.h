#pragma once
#include <cstdint>

#include "filestream/LcUFileURLBlock.h"

// The clean or the dirty list: blocks that no entry holds, oldest first,
// linked through the blocks themselves.
class LcUFileURLBlockList {
public:
  LcUFileURLBlock* Head() const { return head; }
  int32_t Count() const { return count; }

  void Append(LcUFileURLBlock* block) {
    block->list = this;
    block->next = nullptr;
    block->prev = tail;
    if (tail)
      tail->next = block;
    else
      head = block;
    tail = block;
    ++count;
  }

  void Remove(LcUFileURLBlock* block) {
    if (block->prev)
      block->prev->next = block->next;
    else
      head = block->next;
    if (block->next)
      block->next->prev = block->prev;
    else
      tail = block->prev;
    block->next = block->prev = nullptr;
    block->list = nullptr;
    --count;
  }

private:
  LcUFileURLBlock* head = nullptr;
  LcUFileURLBlock* tail = nullptr;
  int32_t count = 0;
};
