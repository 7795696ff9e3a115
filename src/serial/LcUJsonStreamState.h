#pragma once
#include <cstdint>

#include "foundation/LcUStringA.h"
#include "serial/LcUJsonNode.h"
#include "serial/LcUVector.h"

// One level of the cursor. index is the next array item to read; item and
// last keep reading and appending constant time on long arrays.
struct LcUJsonStreamFrame {
  LcUJsonNode* node;
  int32_t index;
  LcUJsonNode* item;
  LcUJsonNode* last;
};

struct LcUJsonStreamState {
  LcUJsonNode* root = nullptr;
  LcUVector<LcUJsonStreamFrame*> frames;
  LcUStringA pendingName;
  int32_t objectDepth = 0;
  int32_t arrayDepth = 0;
  bool failed = false;
};
